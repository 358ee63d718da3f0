// The check that comes before a cleanup.
#pragma once

#include <functional>
#include <optional>

#include "companion/commands/options.h"
#include "companion/output/console.h"
#include "companion/reports/reports.h"

namespace companion {

/// Whether a source that is not the one that was analyzed is none the less in order, or one that
/// is, and has a backup beside it.
using IsExcused = std::function<bool(File const&)>;

/// Complains as Check does, for a cleanup that is to follow. Returns the reports if there is
/// nothing to complain of.
[[nodiscard]] std::optional<Reports> CheckBefore(Options const& options, Console& console,
                                                 IsExcused const& isExcused);

}  // namespace companion
