// qln-fp-tree undo
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Renames every backup below options.root to its source, if that is the backup less some markers,
/// or a beginning of such a text, or gone. Complains of all others, and leaves them.
void Undo(Options const& options, Console& console);

}  // namespace tree
