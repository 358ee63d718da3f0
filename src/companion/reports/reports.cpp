#include "companion/reports/reports.h"

#include <set>

#include "merge/paths/path_order.h"

namespace companion {

namespace fs = std::filesystem;

std::vector<fs::path> NamedSources(Reports const& reports) {
  const auto isBefore = [](fs::path const* one, fs::path const* other) {
    return ComparePaths(*one, *other) < 0;
  };
  std::set<fs::path const*, decltype(isBefore)> named;
  for (Report const& report : reports.each) {
    for (File const& file : report.files.files) {
      named.insert(named.end(), &file.path);
    }
  }
  std::vector<fs::path> sources;
  sources.reserve(named.size());
  for (fs::path const* path : named) {
    sources.push_back(*path);
  }
  return sources;
}

File const* FindFile(Files const& files, fs::path const& path) {
  File key;
  key.path = path;
  const auto found = files.files.find(key);
  return found == files.files.end() ? nullptr : &*found;
}

std::size_t CountMarkers(File const& file) {
  std::size_t count = 0;
  for (Line const& line : file.lines) {
    count += line.markers.size();
  }
  return count;
}

}  // namespace companion
