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
/// every path each time, this class about each folder and each file once. What changes in the file
/// system after that first look is not seen. For use by one thread at a time.
class SourcePaths {
 public:
  struct SourcePath {
    std::size_t number;  ///< Counts the different paths from 0; two spellings of one file have two.
    std::filesystem::path relative;
  };

  SourcePaths() = default;
  SourcePaths(SourcePaths&&) = default;
  SourcePaths& operator=(SourcePaths&&) = default;
  ~SourcePaths() = default;

  /// A copy begins with nothing remembered. That loses only time, and it could not take over
  /// m_inOrder, which points into m_files.
  SourcePaths(SourcePaths const& /*other*/) {}
  SourcePaths& operator=(SourcePaths const& /*other*/) { return *this; }

  /// The reference is valid until the function is called with another root, which makes everything
  /// forgotten and starts the numbers anew.
  [[nodiscard]] SourcePath const& Relative(std::filesystem::path const& path,
                                           std::filesystem::path const& root);

 private:
  /// How many folders above a path are looked up, and remembered, for that path; if the folder
  /// above them is not known either, it is left to the standard functions. Without such a limit, a
  /// path of n folders would be remembered n times, each time shorter by one, and so take memory
  /// that grows with the square of n.
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
  /// For each folder, as reports write it, the text to which the name of a file in it is appended
  /// to get the relative path. No text for a folder outside the root, whose files are each looked
  /// up in full: from a folder that contains the root, a name may lead back to it.
  std::unordered_map<std::string, std::optional<std::string>> m_folders;
  PathMap m_files;
  /// By number. Each report mostly has its paths in the order of the one before: the path behind
  /// the one last found is tried first, and mostly saves the search.
  std::vector<PathMap::const_pointer> m_inOrder;
  std::size_t m_expected = 0;  ///< The number to try first.
};
