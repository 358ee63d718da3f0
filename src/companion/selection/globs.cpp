#include "companion/selection/globs.h"

#include <fnmatch.h>

#include <algorithm>
#include <string_view>

namespace companion {

namespace {

bool Matches(std::string const& glob, std::string const& path) {
  return glob.empty() || ::fnmatch(glob.c_str(), path.c_str(), FNM_LEADING_DIR) == 0;
}

/// For the system **/ is at least one folder.
std::string WithoutAnyFolders(std::string glob) {
  constexpr std::string_view anyFolders = "**/";
  for (std::size_t at = 0; (at = glob.find(anyFolders, at)) != std::string::npos;) {
    glob.erase(at, anyFolders.size());
  }
  return glob;
}

/// A folder may be written with a separator behind it, and a path with the root's before it; empty
/// for the root itself.
std::string Plain(std::string_view glob) {
  while (glob.starts_with("./") || glob.starts_with('/')) {
    glob.remove_prefix(glob.front() == '/' ? 1 : 2);
  }
  while (glob.ends_with('/')) {
    glob.remove_suffix(1);
  }
  return glob == "." ? std::string() : std::string(glob);
}

}  // namespace

bool MatchesAny(std::vector<std::string> const& globs, std::filesystem::path const& path) {
  return std::ranges::any_of(globs, [&path](std::string const& typed) {
    const std::string glob = Plain(typed);
    return Matches(glob, path.native()) || Matches(WithoutAnyFolders(glob), path.native());
  });
}

}  // namespace companion
