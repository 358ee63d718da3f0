// What would be in the way of a cleanup of sources that are as they should be.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "companion/sources/source_problem.h"
#include "merge/files.h"

namespace companion {

/// Remembers what it found of folders. For one thread.
class Obstacles {
 public:
  /// `agreed` is all that is to be cleaned, and outlives the object.
  Obstacles(std::filesystem::path root, Files const& agreed);

  /// What is in the way of cleaning one source: it lies outside the root or is a link, it may not
  /// be renamed, it was here before under another spelling, there is no place for its backup, or
  /// its folder may not be written. Beside a source that was cleaned, or has changed otherwise, a
  /// backup is none.
  [[nodiscard]] MaybeProblem InTheWayOf(File const& file, bool hasChanged);

 private:
  struct Folder {
    std::filesystem::path canonical;
    bool isOutside = false;
    bool isReadOnly = false;
  };

  [[nodiscard]] bool IsOutside(std::filesystem::path const& canonical) const;
  Folder& Look(std::filesystem::path const& folder);

  [[nodiscard]] bool IsBackupOfAnother(File const& file) const;

  Files const& m_agreed;
  std::filesystem::path m_root;
  std::filesystem::path m_canonicalRoot;
  std::map<std::string, Folder> m_folders;
  std::set<std::string> m_named;  ///< The canonical paths of the sources so far.
};

}  // namespace companion
