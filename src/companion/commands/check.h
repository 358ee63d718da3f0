// The check that comes before a cleanup.
#pragma once

#include <optional>

#include "companion/commands/cleanable.h"
#include "companion/commands/options.h"
#include "companion/output/console.h"

namespace companion {

/// Complains as Check does. Returns what is agreed if there is nothing to complain of.
[[nodiscard]] std::optional<Files> AgreedIfAllIsWell(Options const& options, Console& console);

/// Complains as Check does, for a cleanup that is to follow, but only of what has something to
/// remove. Returns that if there is nothing to complain of; with options.skip, what is left of it
/// without that for which a source is skipped, or refused.
[[nodiscard]] std::optional<Cleanable> CheckBefore(Options const& options, Console& console,
                                                   IsExcused const& isExcused);

}  // namespace companion
