#include "companion/backups/backups.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "cleaner/backup_name.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

class Walk {
 public:
  Walk(fs::path const& root, PathFilter& paths, Console& console)
      : m_root(root), m_paths(paths), m_console(console) {}

  [[nodiscard]] std::vector<fs::path> const& Found() const { return m_found; }

  /// `relative` to the root.
  void Folder(fs::path const& relative) {
    for (auto const& [name, isFolder] : EntriesOf(relative)) {
      if (const auto source = SourceOf(name)) {
        if (fs::path path = relative / *source; m_paths.Takes(path)) {
          m_found.push_back(std::move(path));
        }
      } else if (isFolder) {
        Folder(relative / name);
      }
    }
  }

 private:
  struct Entry {
    std::string name;
    bool isFolder;
  };

  /// Those that matter, by name.
  std::vector<Entry> EntriesOf(fs::path const& relative) {
    const fs::path folder = relative.empty() ? m_root : m_root / relative;
    std::vector<Entry> entries;
    std::error_code error;
    for (fs::directory_iterator at(folder, error); !error && at != fs::directory_iterator();
         at.increment(error)) {
      std::error_code unknown;
      const fs::file_type type = at->symlink_status(unknown).type();
      const bool isFolder = type == fs::file_type::directory;
      if (unknown && type != fs::file_type::not_found) {
        m_console.Complain("cannot read " + at->path().string() + ": " + unknown.message());
      }
      std::string name = at->path().filename().string();
      if (!m_paths.TakesAll()) {
        static_cast<void>(m_paths.Takes(relative / name));  // Which remembers the globs.
      }
      if (isFolder || SourceOf(name)) {
        entries.push_back({std::move(name), isFolder});
      }
    }
    if (error) {
      m_console.Complain("cannot read " + folder.string() + ": " + error.message());
    }
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
  }

  fs::path const& m_root;
  PathFilter& m_paths;
  Console& m_console;
  std::vector<fs::path> m_found;
};

}  // namespace

std::vector<fs::path> FindBackups(fs::path const& root, PathFilter paths, Console& console) {
  Walk walk(root, paths, console);
  walk.Folder({});
  paths.RefuseUnmatched();
  return walk.Found();
}

}  // namespace companion
