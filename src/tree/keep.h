// qln-fp-tree keep
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Gives every cleaned source below options.root what its backup has beside its content, has the
/// file systems written to the disk, and only then deletes the backups. Complains of a source that
/// is not its backup less some markers, and leaves it.
void Keep(Options const& options, Console& console);

}  // namespace tree
