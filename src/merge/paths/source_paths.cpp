#include "merge/paths/source_paths.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "merge/paths/weakly_canonical.h"

namespace {

namespace fs = std::filesystem;

/// Whether the path of a file stays as it is when symbolic links are followed, provided that its
/// folder does: the last element is no link, or there is nothing of that name.
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
  if (IsExpected(path)) {
    return m_inOrder[m_expected++]->second;
  }
  auto known = m_files.find(path.native());
  if (known == m_files.end()) {
    fs::path relative = Find(path, MostNewFolders);
    known = m_files.emplace(path.native(), SourcePath{m_inOrder.size(), std::move(relative)}).first;
    m_inOrder.push_back(&*known);
  }
  m_expected = known->second.number + 1;
  return known->second;
}

bool SourcePaths::IsExpected(fs::path const& path) const {
  return m_expected < m_inOrder.size() && m_inOrder[m_expected]->first == path.native();
}

void SourcePaths::SetRoot(fs::path const& root) {
  if (m_root.native() != root.native()) {
    *this = SourcePaths();
    m_root = root;
  }
}

fs::path SourcePaths::Find(fs::path const& path, int newFolders) {
  const std::string_view text = path.native();
  const std::size_t slash = text.rfind('/');
  if (newFolders == 0 || slash == std::string_view::npos || slash == 0 || text[slash - 1] == '/' ||
      text.find('\0') != std::string_view::npos || !IsPlainName(text.substr(slash + 1)) ||
      !EndsInItself(path)) {
    return FindPlainly(path);
  }
  auto const& folder = FindFolder(text.substr(0, slash), newFolders - 1);
  return folder ? fs::path(*folder).concat(text.substr(slash + 1)) : FindPlainly(path);
}

fs::path SourcePaths::FindPlainly(fs::path const& path) {
  const fs::path canonical = WeaklyCanonical(path);
  if (!m_canonicalRoot) {
    m_canonicalRoot = WeaklyCanonical(m_root);
  }
  return canonical.lexically_relative(*m_canonicalRoot);
}

std::optional<std::string> const& SourcePaths::FindFolder(std::string_view folder, int newFolders) {
  const auto [known, isNew] = m_folders.try_emplace(std::string(folder));
  // Finding a parent adds to the map, but that moves no element: the reference stays valid.
  std::optional<std::string>& found = known->second;
  if (isNew) {
    const std::string relative = Find(folder, newFolders).native();
    if (relative == ".") {
      found = "";
    } else if (!relative.starts_with("..")) {
      found = relative.ends_with('/') ? relative : relative + '/';
    }
  }
  return found;
}
