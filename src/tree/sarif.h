// qln-fp-tree sarif
#pragma once

#include "tree/console.h"
#include "tree/options.h"

namespace tree {

/// Prints the warnings report options.reports names as SARIF 2.1.0. Throws std::runtime_error for
/// what is not there, cannot be read, or is no warnings report.
void Sarif(Options const& options, Console& console);

}  // namespace tree
