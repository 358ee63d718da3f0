#include "companion/sources/source_check.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <tuple>

#include "companion/output/counted.h"
#include "companion/sources/line_end_forms.h"
#include "files/source_file.h"
#include "merge/hashing/sha1.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

using Kind = SourceProblem::Kind;

/// Where some reports saw this very text: which did not.
std::string WhoSawAnother(Reports const& reports, SourceRecords const& records,
                          std::string const& hash) {
  constexpr std::size_t mostNamed = 3;
  std::string names;
  std::size_t others = 0;
  for (auto const& [report, record] : records.all) {
    if (record->hash != hash && ++others <= mostNamed) {
      names += (names.empty() ? "" : ", ") + reports.each[report].path.string();
    }
  }
  if (others == records.all.size()) {
    return {};
  }
  return "; another text was seen by " + names +
         (others > mostNamed ? " and " + WithSeparators(others - mostNamed) + " more" : "");
}

SourceProblem NotAnalyzed(fs::path const& source, std::string const& content,
                          std::string const& hash, Reports const& reports,
                          SourceRecords const& records) {
  std::string const& first = records.all.front().second->hash;
  const bool isSame =
      std::ranges::all_of(records.all,
                          [&](auto const& record) { return record.second->hash == first; }) &&
      IsHashButForLineEnds(first, content);
  return {isSame ? Kind::OtherLineEnds : Kind::Changed,
          NotAsAnalyzed(source) + WhoSawAnother(reports, records, hash)};
}

}  // namespace

SourceProblem WhyNotOpen(fs::path const& source) {
  struct stat status{};
  // The system would take what stands before a NUL for the name.
  const bool isName = source.native().find('\0') == std::string::npos;
  const bool isThere = ::stat(source.c_str(), &status) == 0;
  if (!isName || (isThere ? !S_ISREG(status.st_mode) : errno == ENOENT || errno == ENOTDIR)) {
    return {Kind::Gone, "no such source: " + source.string()};
  }
  return {Kind::Forbidden, "source that may not be read: " + source.string()};
}

std::string NotAsAnalyzed(fs::path const& source) {
  return "not the source that was analyzed: " + source.string();
}

CheckedSource CheckSource(Reports const& reports, SourceRecords const& records,
                          fs::path const& root) {
  const fs::path source = root / *records.path;
  SourceFile file(source);
  if (!file.IsOpen()) {
    return {.problem = WhyNotOpen(source)};
  }
  CheckedSource checked{.size = file.Size()};
  const auto content = file.ReadWhole();
  if (!content) {
    checked.problem = {Kind::Other, "source that cannot be read to its end: " + source.string()};
    return checked;
  }
  const std::string hash = HashOf(*content);
  if (!std::ranges::all_of(records.all,
                           [&](auto const& record) { return record.second->hash == hash; })) {
    checked.problem = NotAnalyzed(source, *content, hash, reports, records);
  } else if (File const* const agreed = FindFile(reports.agreed, *records.path)) {
    checked.unsafe = UnsafeLines(agreed->lines, *content);
  }
  return checked;
}

std::size_t CountDifferentMarkers(SourceRecords const& records, CodeFilter const& codes) {
  using OneMarker = std::tuple<std::uint32_t, std::uint64_t, std::uint64_t, std::uint64_t>;
  std::vector<OneMarker> markers;
  for (auto const& [report, record] : records.all) {
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

}  // namespace companion
