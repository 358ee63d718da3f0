#include "companion/sources/source_check.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <tuple>

#include "files/source_file.h"
#include "merge/hashing/sha1.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

using Records = std::vector<File const*>;

/// As a person would count: a marker that two reports list is one.
std::size_t CountDifferentMarkers(Records const& records, CodeFilter const& codes) {
  using OneMarker = std::tuple<std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t>;
  std::vector<OneMarker> markers;
  for (File const* record : records) {
    for (Line const& line : record->lines) {
      for (auto const& [code, columns, offsets] : line.markers) {
        if (codes.Takes(code)) {
          markers.emplace_back(line.line, offsets.begin, offsets.end, code);
        }
      }
    }
  }
  std::ranges::sort(markers);
  return markers.size() - std::ranges::unique(markers).size();
}

Complaint WhyNotOpen(fs::path const& source) {
  struct stat status{};
  const bool isThere = ::stat(source.c_str(), &status) == 0;
  if (isThere ? !S_ISREG(status.st_mode) : errno == ENOENT || errno == ENOTDIR) {
    return "no such source: " + source.string();
  }
  return "source that may not be read: " + source.string();
}

/// Takes what is to be told of the source into `checked`; `agreed` may be null.
void LookAt(fs::path const& source, Records const& records, File const* agreed,
            CheckedSource& checked) {
  SourceFile file(source);
  if (!file.IsOpen()) {
    checked.complaint = WhyNotOpen(source);
    return;
  }
  checked.size = file.Size();
  const auto content = file.ReadWhole();
  if (!content) {
    checked.complaint = "source that cannot be read to its end: " + source.string();
    return;
  }
  const std::string hash = HashOf(*content);
  if (!std::ranges::all_of(records, [&](File const* record) { return record->hash == hash; })) {
    checked.complaint = "not the source that was analyzed: " + source.string();
  } else if (agreed != nullptr) {
    checked.unsafe = UnsafeLines(agreed->lines, *content);
  }
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
  checked.markers = CountDifferentMarkers(records, reports.codes);
  LookAt(root / path, records, FindFile(reports.agreed, path), checked);
  return checked;
}

}  // namespace companion
