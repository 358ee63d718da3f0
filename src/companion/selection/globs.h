// A choice of paths.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace companion {

/// Globs of paths that are relative to a root. `*` stands for any bytes, of folders, too, `?` for
/// one, `[a-z]` for one of some; `**/` also for no folder. What names a folder takes in all below
/// it. A glob may also begin with the root's own path, or as reports write it.
class Globs {
 public:
  Globs() = default;
  Globs(std::vector<std::string> const& typed, std::filesystem::path const& root);

  [[nodiscard]] bool AreNone() const { return m_globs.empty(); }

  /// Whether some glob takes in the path. Remembers which do.
  [[nodiscard]] bool Match(std::filesystem::path const& path);

  /// The first that took in no path so far, as it was typed.
  [[nodiscard]] std::optional<std::string> Unmatched() const;

 private:
  struct Glob {
    std::string typed;
    std::string plain;
    std::string withoutAnyFolders;
    bool hasMatched = false;
  };

  std::vector<Glob> m_globs;
};

}  // namespace companion
