// Making the paths of raw reports relative to the source-tree root.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Gives WeaklyCanonical(path).lexically_relative(WeaklyCanonical(root)), with the same exceptions,
/// but remembers what it found: the standard functions ask the file system about every folder of
/// every path, this about one file, once. It so sees a tree as it was when it first looked. For use
/// by one thread at a time.
class SourcePaths {
 public:
  struct SourcePath {
    std::size_t number;  ///< Another for each path as written, from 0.
    std::filesystem::path relative;
  };

  SourcePaths() = default;
  SourcePaths(SourcePaths&&) = default;
  SourcePaths& operator=(SourcePaths&&) = default;
  ~SourcePaths() = default;

  /// A copy has everything to find again: what is remembered only saves time, and m_inOrder points
  /// into m_files.
  SourcePaths(SourcePaths const& /*other*/) {}
  SourcePaths& operator=(SourcePaths const& /*other*/) { return *this; }

  /// Valid as long as the root stays the same; another root starts the numbers anew.
  [[nodiscard]] SourcePath const& Relative(std::filesystem::path const& path,
                                           std::filesystem::path const& root);

 private:
  /// Of the folders above a path, so many are looked up one by one and remembered; what is then
  /// still not known is left to the standard functions. Without a limit a path of n folders would
  /// be remembered n times, each time shorter by one: memory that grows with the square of n.
  static constexpr int MostNewFolders = 8;

  using PathMap = std::unordered_map<std::string, SourcePath>;

  [[nodiscard]] bool IsExpected(std::filesystem::path const& path) const;
  void SetRoot(std::filesystem::path const& root);
  [[nodiscard]] std::filesystem::path Find(std::filesystem::path const& path, int newFolders);
  [[nodiscard]] std::filesystem::path FindPlainly(std::filesystem::path const& path);
  [[nodiscard]] std::optional<std::string> const& FindFolder(std::string_view folder,
                                                             int newFolders);

  std::filesystem::path m_root;
  std::optional<std::filesystem::path> m_canonicalRoot;  ///< Looked up when first needed.
  /// For each folder as reports write it, what to put before the name of a file in it; nothing for
  /// folders whose files each need the plain way.
  std::unordered_map<std::string, std::optional<std::string>> m_folders;
  PathMap m_files;
  /// By number. Reports mostly keep to one order, and the next path then need not be searched for.
  std::vector<PathMap::const_pointer> m_inOrder;
  std::size_t m_expected = 0;
};
