// Paths as another machine writes them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// ASCII letters in lower case.
[[nodiscard]] std::string FoldedCase(std::string text);

/// Whether a letter and a colon stand in front.
[[nodiscard]] bool BeginsWithDrive(std::string_view path);

/// A folder of another machine.
class ForeignFolder {
 public:
  /// Where it is a Windows path, backslashes separate, too, and case is ignored.
  explicit ForeignFolder(std::string_view path);

  /// What leads from the folder to a path of the same machine, with slashes and without dots;
  /// nothing when that is not below the folder.
  [[nodiscard]] std::optional<std::filesystem::path> Below(std::string_view path) const;

 private:
  bool m_isWindows;
  std::vector<std::string> m_elements;
};

/// What the folders of some paths have in common.
class CommonFolder {
 public:
  void Add(std::string_view path);

  /// As that machine writes it; empty when they have nothing in common.
  [[nodiscard]] std::string Text() const;

 private:
  bool m_isFirst = true;
  bool m_isWindows = false;
  std::vector<std::string> m_elements;
};

}  // namespace companion
