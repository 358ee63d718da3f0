// qln-fp-tree select
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Writes what the reports agree on, cut to options.codes and options.paths less options.without,
/// as a structured report to options.output. Throws what ReadAgreed does, and std::runtime_error
/// for a code that is none and for an output that cannot be written.
void Select(Options const& options, Console& console);

}  // namespace tree
