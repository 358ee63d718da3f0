// qln-fp-tree preview
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Prints what a cleanup would change, as a patch; or, with options.stat, how much. Touches
/// nothing. Complains of the sources that a cleanup would refuse, and of those that no patch can
/// name. Throws what ReadAgreed does.
void Preview(Options const& options, Console& console);

}  // namespace tree
