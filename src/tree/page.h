// The command page.
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Writes the page that shows what a cleanup with these reports would do to options.output, as one
/// HTML file. Throws std::exception with a text for the user when a report or the file fails it; a
/// source that is missing or has changed is no failure, and shown as such.
void Page(Options const& options, Console& console);

}  // namespace tree
