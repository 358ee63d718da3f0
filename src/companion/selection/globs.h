// A choice of paths.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// Whether some glob takes in the path, which is relative to the root. `*` stands for any bytes, of
/// folders, too, `?` for one, `[a-z]` for one of some; `**/` also for no folder. What names a
/// folder takes in all below it.
[[nodiscard]] bool MatchesAny(std::vector<std::string> const& globs,
                              std::filesystem::path const& path);

}  // namespace companion
