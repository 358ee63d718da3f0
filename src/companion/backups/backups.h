// The backups that cleanups left in a tree.
#pragma once

#include <filesystem>
#include <vector>

#include "companion/output/console.h"
#include "companion/selection/filters.h"

namespace companion {

/// The sources below `root` of which a backup is there, known by its name, and which the filter
/// takes; relative to the root, in the order of names. No link is followed. Complains of the
/// folders that cannot be read. Throws std::runtime_error for a glob that matches nothing that is
/// below the root, with a backup or without: what was cleaned need not be all that it is meant for.
[[nodiscard]] std::vector<std::filesystem::path> FindBackups(std::filesystem::path const& root,
                                                             PathFilter paths, Console& console);

}  // namespace companion
