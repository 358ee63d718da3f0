// qln-fp-tree clean
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Does what check does, and, if there is nothing to complain of, what a cleanup does; then looks
/// at each result, and with options.keep does what keep does, unless a file was refused. Goes on
/// where an interrupted run of its own left off.
void Clean(Options const& options, Console& console);

}  // namespace tree
