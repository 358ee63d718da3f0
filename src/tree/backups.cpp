#include "tree/backups.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>

#include "cleaner/marks_filter.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

class Walk {
 public:
  Walk(std::vector<Backup>& found, Console& console) : m_found(found), m_console(console) {}

  void Folder(fs::path const& folder) {
    for (auto const& [name, isFolder] : EntriesOf(folder)) {
      const std::string_view text = name;
      const fs::path path = folder / name;
      if (text.ends_with(MarksFilter::TempName) && text != MarksFilter::TempName) {
        m_found.push_back({path, folder / text.substr(0, text.size() - Suffix)});
      } else if (isFolder) {
        Folder(path);
      }
    }
  }

 private:
  struct Entry {
    std::string name;
    bool isFolder;
  };

  static constexpr std::size_t Suffix = MarksFilter::TempName.size();

  /// Those that matter, by name.
  std::vector<Entry> EntriesOf(fs::path const& folder) {
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
      if (isFolder || name.ends_with(MarksFilter::TempName)) {
        entries.push_back({std::move(name), isFolder});
      }
    }
    if (error) {
      m_console.Complain("cannot read " + folder.string() + ": " + error.message());
    }
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
  }

  std::vector<Backup>& m_found;
  Console& m_console;
};

}  // namespace

std::vector<Backup> FindBackups(fs::path const& root, Console& console) {
  std::vector<Backup> found;
  Walk(found, console).Folder(root);
  return found;
}

}  // namespace tree
