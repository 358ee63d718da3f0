#include "companion/selection/globs.h"

#include <fnmatch.h>

#include <algorithm>
#include <string_view>
#include <system_error>

namespace companion {

namespace {

namespace fs = std::filesystem;

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

std::string_view WithoutSeparatorsBehind(std::string_view path) {
  while (path.ends_with('/')) {
    path.remove_suffix(1);
  }
  return path;
}

/// Takes the root off an absolute glob, and what stands for the root in reports.
std::string_view BelowRoot(std::string_view glob, fs::path const& root) {
  std::error_code ignored;
  const fs::path typed = fs::absolute(root, ignored).lexically_normal();
  const fs::path canonical = fs::canonical(root, ignored);
  for (const std::string_view prefix :
       {std::string_view("|?|"), WithoutSeparatorsBehind(typed.native()),
        WithoutSeparatorsBehind(canonical.native())}) {
    const std::string_view rest = glob.substr(glob.starts_with(prefix) ? prefix.size() : 0);
    if (rest.size() < glob.size() && (rest.empty() || rest.front() == '/')) {
      return rest;
    }
  }
  return glob;
}

/// A folder may be written with a separator behind it, and a path with the root's before it; empty
/// for the root itself.
std::string Plain(std::string_view glob) {
  while (glob.starts_with("./") || glob.starts_with('/')) {
    glob.remove_prefix(glob.front() == '/' ? 1 : 2);
  }
  glob = WithoutSeparatorsBehind(glob);
  return glob == "." ? std::string() : std::string(glob);
}

}  // namespace

Globs::Globs(std::vector<std::string> const& typed, fs::path const& root) {
  for (std::string const& one : typed) {
    const std::string plain = Plain(BelowRoot(one, root));
    m_globs.push_back({one, plain, WithoutAnyFolders(plain)});
  }
}

bool Globs::Match(fs::path const& path) {
  bool isMatched = false;
  for (Glob& glob : m_globs) {
    if (Matches(glob.plain, path.native()) || Matches(glob.withoutAnyFolders, path.native())) {
      glob.hasMatched = true;
      isMatched = true;
    }
  }
  return isMatched;
}

std::optional<std::string> Globs::Unmatched() const {
  const auto found = std::ranges::find(m_globs, false, &Glob::hasMatched);
  return found == m_globs.end() ? std::nullopt : std::optional(found->typed);
}

}  // namespace companion
