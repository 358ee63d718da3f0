// qln-fp-tree check
#pragma once

#include <functional>
#include <optional>

#include "tree/console.h"
#include "tree/options.h"
#include "tree/reports.h"

namespace tree {

/// Complains of everything that would go wrong in a cleanup, or would make it do the wrong thing;
/// prints what was looked at, and with options.list the sources that some report does not name.
void Check(Options const& options, Console& console);

/// Whether a source that is not the one that was analyzed is none the less in order.
using IsExcused = std::function<bool(File const&)>;

/// The same for a cleanup that is to follow. Returns the reports if there is nothing to complain
/// of.
[[nodiscard]] std::optional<Reports> CheckBefore(Options const& options, Console& console,
                                                 IsExcused const& isExcused);

}  // namespace tree
