// Whether an output would take the place of what it is made of.
#pragma once

#include <filesystem>
#include <functional>

#include "companion/commands/options.h"

namespace companion {

/// Throws std::runtime_error when options.output leads to one of options.reports, or to a source:
/// `isSource` tells that of a path relative to the root.
void RefuseAsOutput(Options const& options,
                    std::function<bool(std::filesystem::path const&)> const& isSource);

}  // namespace companion
