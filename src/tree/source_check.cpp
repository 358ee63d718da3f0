#include "tree/source_check.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <tuple>

#include "cleaner/edit_window.h"
#include "cleaner/source_file.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

using Records = std::vector<File const*>;

/// As a person would count: a marker that two reports list is one.
std::size_t CountMarkers(Records const& records) {
  using OneMarker = std::tuple<std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t>;
  std::vector<OneMarker> markers;
  for (File const* record : records) {
    for (Line const& line : record->lines) {
      for (auto const& [code, columns, offsets] : line.markers) {
        markers.emplace_back(line.line, offsets.begin, offsets.end, code);
      }
    }
  }
  std::ranges::sort(markers);
  return markers.size() - std::ranges::unique(markers).size();
}

std::string WhyNotOpen(fs::path const& source) {
  struct stat status{};
  const bool isThere = ::stat(source.c_str(), &status) == 0;
  if (isThere ? !S_ISREG(status.st_mode) : errno == ENOENT || errno == ENOTDIR) {
    return "no such source: " + source.string();
  }
  return "source that may not be read: " + source.string();
}

std::string ComplaintOf(fs::path const& source, Records const& records, std::uint64_t& size) {
  SourceFile file(source);
  if (!file.IsOpen()) {
    return WhyNotOpen(source);
  }
  size = file.Size();
  const auto hash = EditWindow(file).HashSource();
  if (!hash) {
    return "source that cannot be read to its end: " + source.string();
  }
  const bool isAnalyzed =
      std::ranges::all_of(records, [&hash](File const* record) { return record->hash == *hash; });
  return isAnalyzed ? std::string() : "not the source that was analyzed: " + source.string();
}

}  // namespace

CheckedSource CheckSource(Reports const& reports, fs::path const& path, fs::path const& root) {
  CheckedSource checked;
  Records records;
  for (Report const& report : reports.each) {
    File const* const record = FindFile(report.files, path);
    checked.isNamedBy.push_back(record != nullptr);
    if (record != nullptr) {
      records.push_back(record);
    }
  }
  checked.markers = CountMarkers(records);
  checked.complaint = ComplaintOf(root / path, records, checked.size);
  return checked;
}

std::string HashOf(fs::path const& path) {
  SourceFile file(path);
  return file.IsOpen() ? EditWindow(file).HashSource().value_or("") : "";
}

}  // namespace tree
