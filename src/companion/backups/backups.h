// The backups that cleanups left in a tree.
#pragma once

#include <filesystem>
#include <vector>

#include "companion/output/console.h"

namespace companion {

/// The sources below `root` of which a backup is there, known by its name; relative to the root, in
/// the order of names. No link is followed. Complains of the folders that cannot be read.
[[nodiscard]] std::vector<std::filesystem::path> FindBackups(std::filesystem::path const& root,
                                                             Console& console);

}  // namespace companion
