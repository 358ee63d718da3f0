// The backups that cleanups left in a tree.
#pragma once

#include <filesystem>
#include <vector>

#include "tree/console.h"

namespace tree {

struct Backup {
  std::filesystem::path backup;
  std::filesystem::path source;
};

/// Every backup below `root`, known by its name, in the order of names; no link is followed.
/// Complains of the folders that cannot be read.
[[nodiscard]] std::vector<Backup> FindBackups(std::filesystem::path const& root, Console& console);

}  // namespace tree
