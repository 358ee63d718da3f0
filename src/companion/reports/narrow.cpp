#include "companion/reports/narrow.h"

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace companion {

namespace {

using Codes = std::set<std::uint64_t>;

/// Unless all are taken; for a large report that takes a moment.
void AddCodes(Files const& files, CodeFilter const& filter, Codes& codes) {
  if (filter.TakesAll()) {
    return;
  }
  for (File const& file : files.files) {
    for (Line const& line : file.lines) {
      for (Marker const& marker : line.markers) {
        codes.insert(marker.code);
      }
    }
  }
}

void TakeSources(Files& files, PathFilter& paths) {
  if (!paths.TakesAll()) {
    std::erase_if(files.files, [&paths](File const& file) { return !paths.Takes(file.path); });
  }
}

std::vector<Line> Cut(std::vector<Line> lines, CodeFilter const& codes) {
  std::erase_if(lines, [&codes](Line& line) {
    const std::size_t left =
        std::erase_if(line.markers, [&codes](Marker const& one) { return !codes.Takes(one.code); });
    // A line that lists nothing from the start stays: uncut, the report is as a merge writes it.
    return left > 0 && line.markers.empty();
  });
  return lines;
}

Files Cut(Files const& files, CodeFilter const& codes) {
  Files cut;
  for (File const& file : files.files) {
    cut.files.insert(cut.files.end(),
                     File{file.version, file.path, file.hash, Cut(file.lines, codes)});
  }
  cut.DeleteEmpty();
  return cut;
}

}  // namespace

void Narrow(Files& agreed, Filters filters) {
  Codes codes;
  AddCodes(agreed, filters.codes, codes);
  TakeSources(agreed, filters.paths);
  filters.paths.RefuseUnmatched();
  filters.codes.RefuseUnmatched(codes);
  if (!filters.codes.TakesAll()) {
    agreed = Cut(agreed, filters.codes);
  }
  agreed.DeleteEmpty();
}

void Narrow(Reports& reports, Filters filters, bool areWhole) {
  Codes codes;
  for (Report& report : reports.each) {
    AddCodes(report.files, filters.codes, codes);
    TakeSources(report.files, filters.paths);
  }
  TakeSources(reports.agreed, filters.paths);
  if (areWhole) {
    filters.paths.RefuseUnmatched();
    filters.codes.RefuseUnmatched(codes);
  }
  if (!filters.codes.TakesAll()) {
    reports.uncut = std::exchange(reports.agreed, Cut(reports.agreed, filters.codes));
    reports.codes = std::move(filters.codes);
  }
}

}  // namespace companion
