#include "merge/source_paths.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "merge/weakly_canonical.h"

namespace {

namespace fs = std::filesystem;

/// Whether the path's last element, in a folder already resolved, stands for itself: it is no
/// symbolic link, or nothing at all.
bool EndsInItself(fs::path const& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 ? !S_ISLNK(status.st_mode) : errno == ENOENT;
}

bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != "..";
}

}  // namespace

SourcePaths::SourcePath const& SourcePaths::Relative(fs::path const& path, fs::path const& root) {
  SetRoot(root);
  if (const auto known = m_files.find(path.native()); known != m_files.end()) {
    return known->second;
  }
  fs::path relative = Find(path);
  return m_files.emplace(path.native(), SourcePath{m_count++, std::move(relative)}).first->second;
}

void SourcePaths::SetRoot(fs::path const& root) {
  if (m_root.native() != root.native()) {
    m_root = root;
    m_canonicalRoot.reset();
    m_folders.clear();
    m_files.clear();
  }
}

fs::path SourcePaths::Find(fs::path const& path) {
  const std::string_view text = path.native();
  const std::size_t slash = text.rfind('/');
  if (slash == std::string_view::npos || slash == 0 || text[slash - 1] == '/' ||
      text.find('\0') != std::string_view::npos || !IsPlainName(text.substr(slash + 1)) ||
      !EndsInItself(path)) {
    return FindPlainly(path);
  }
  auto const& folder = FindFolder(text.substr(0, slash));
  return folder ? fs::path(*folder).concat(text.substr(slash + 1)) : FindPlainly(path);
}

fs::path SourcePaths::FindPlainly(fs::path const& path) {
  const fs::path canonical = WeaklyCanonical(path);
  if (!m_canonicalRoot) {
    m_canonicalRoot = WeaklyCanonical(m_root);
  }
  return canonical.lexically_relative(*m_canonicalRoot);
}

std::optional<std::string> const& SourcePaths::FindFolder(std::string_view folder) {
  const auto [known, isNew] = m_folders.try_emplace(std::string(folder));
  if (isNew) {
    const std::string relative = FindPlainly(folder).native();
    if (relative == ".") {
      known->second = "";
    } else if (!relative.starts_with("..")) {
      // From a folder above the root, a name may lead down to the root again.
      known->second = relative.ends_with('/') ? relative : relative + '/';
    }
  }
  return known->second;
}
