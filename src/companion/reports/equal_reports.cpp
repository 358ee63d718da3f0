#include "companion/reports/equal_reports.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace companion {

namespace {

bool SaySame(Report const& one, Report const& other) {
  return std::ranges::equal(one.files.files, other.files.files, [](File const& a, File const& b) {
    return a.path == b.path && a.hash == b.hash && a.lines == b.lines;
  });
}

/// Equal reports have the same one. Few others do, so that each is held against few.
std::size_t Fingerprint(Report const& report) {
  std::size_t print = 0;
  const auto add = [&print](std::size_t value) { print = (print ^ value) * 1'099'511'628'211U; };
  for (File const& file : report.files.files) {
    add(std::hash<std::string>()(file.path.native()));
    add(std::hash<std::string>()(file.hash));
    for (Line const& line : file.lines) {
      add(line.line);
      for (Marker const& marker : line.markers) {
        add(marker.code ^ (marker.offsets.begin << 16U));
      }
    }
  }
  return print;
}

}  // namespace

std::vector<std::pair<std::size_t, std::size_t>> EqualReports(Reports const& reports) {
  std::vector<std::pair<std::size_t, std::size_t>> equal;
  std::unordered_map<std::size_t, std::vector<std::size_t>> known;
  for (std::size_t i = 0; i < reports.each.size(); ++i) {
    Report const& report = reports.each[i];
    if (report.files.files.empty()) {
      continue;
    }
    std::vector<std::size_t>& alike = known[Fingerprint(report)];
    const auto same = std::ranges::find_if(
        alike, [&](std::size_t other) { return SaySame(reports.each[other], report); });
    if (same != alike.end()) {
      equal.emplace_back(i, *same);
    } else {
      alike.push_back(i);
    }
  }
  return equal;
}

}  // namespace companion
