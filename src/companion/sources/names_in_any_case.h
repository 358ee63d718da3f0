// Finding files whose names are written in another case.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace companion {

/// The files below a folder as they stood there when one was first asked for. Links to folders are
/// not followed, and folders that may not be read are passed over. For one thread.
class NamesInAnyCase {
 public:
  explicit NamesInAnyCase(std::filesystem::path root) : m_root(std::move(root)) {}

  /// Those whose paths, relative to the folder, differ from this one in the case of ASCII letters
  /// alone.
  [[nodiscard]] std::vector<std::filesystem::path> Find(std::filesystem::path const& relative);

 private:
  void LookAround();

  std::filesystem::path m_root;
  bool m_hasLooked = false;
  std::multimap<std::string, std::filesystem::path> m_names;
};

}  // namespace companion
