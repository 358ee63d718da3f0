// What would be in the way of a cleanup of sources that are as they should be.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "merge/files.h"

namespace tree {

/// Remembers what it found of folders. For one thread.
class Obstacles {
 public:
  /// `agreed` is all that is to be cleaned, and outlives the object.
  Obstacles(std::filesystem::path root, Files const& agreed);

  /// What is in the way of cleaning one source: it lies outside the root or is a link, there is no
  /// place for its backup, or its folder may not be written, which is said once for each folder.
  /// Empty when nothing is.
  [[nodiscard]] std::string InTheWayOf(File const& file);

 private:
  struct Folder {
    bool isOutside = false;
    bool isReadOnly = false;
  };

  [[nodiscard]] bool IsOutside(std::filesystem::path const& path) const;
  Folder& Look(std::filesystem::path const& folder);

  [[nodiscard]] bool IsBackupOfAnother(File const& file) const;

  Files const& m_agreed;
  std::filesystem::path m_root;
  std::filesystem::path m_canonicalRoot;
  std::map<std::string, Folder> m_folders;
};

/// What is wrong with the temporary directory: it cannot be used, or has no room for as many of the
/// largest of `sizes`, in bytes, as are cleaned at once. Empty when nothing is.
[[nodiscard]] std::string WrongWithTemporaryDirectory(std::vector<std::uint64_t> sizes);

}  // namespace tree
