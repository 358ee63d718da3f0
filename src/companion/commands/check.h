// The check that comes before a cleanup.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "companion/commands/options.h"
#include "companion/output/console.h"
#include "companion/reports/reports.h"

namespace companion {

/// Whether a source that is not the one that was analyzed is none the less in order, or one that
/// is, and has a backup beside it.
using IsExcused = std::function<bool(File const&)>;

/// What a cleanup has before it.
struct Cleanable {
  Files files;
  /// What stays with options.skip, counted by "file" or "line", and what is the matter with it.
  std::map<std::pair<std::string, std::string>, std::size_t> left;
  std::size_t refused = 0;  ///< Files that stay for what cannot be skipped.
};

/// Complains as Check does, for a cleanup that is to follow, but only of what has something to
/// remove. Returns that if there is nothing to complain of; with options.skip, what is left of it
/// without that for which a source is skipped, or refused.
[[nodiscard]] std::optional<Cleanable> CheckBefore(Options const& options, Console& console,
                                                   IsExcused const& isExcused);

}  // namespace companion
