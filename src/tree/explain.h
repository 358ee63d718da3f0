// qln-fp-tree explain
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Prints, for each line of options.source that some report lists, or for the one line that it
/// names, whether its markers go, what each report says of them, and the line itself. Complains
/// when no report names the file. Throws what ReadReports does.
void Explain(Options const& options, Console& console);

}  // namespace tree
