// The tree that a user named.
#pragma once

#include <filesystem>
#include <string>

#include "files/folder.h"

namespace companion {

/// The root, opened once, and the way from there to a source, on which no link is followed: a tree
/// may be in other hands than the process, which may have more rights than they have.
/// Throws nothing but std::bad_alloc. Any thread may use it.
class SourceTree {
 public:
  explicit SourceTree(std::filesystem::path const& root) : m_path(root), m_root(root) {}

  /// The folder of `source`, which is relative to the root.
  [[nodiscard]] Folder FolderOf(std::filesystem::path const& source) const {
    return m_root.Below(source.parent_path());
  }

  /// What the source is called in what is told to the user.
  [[nodiscard]] std::string NameOf(std::filesystem::path const& source) const {
    return (m_path / source).string();
  }

  /// As it was named.
  [[nodiscard]] std::filesystem::path const& Path() const { return m_path; }

 private:
  std::filesystem::path m_path;
  Folder m_root;
};

}  // namespace companion
