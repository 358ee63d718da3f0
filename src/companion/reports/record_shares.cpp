#include "companion/reports/record_shares.h"

#include <algorithm>
#include <format>
#include <system_error>

#include "companion/reports/report_faults.h"
#include "merge/paths/source_paths.h"
#include "merge/reading/report_reader.h"

namespace companion {

namespace fs = std::filesystem;

RecordShares::RecordShares(Report& report, fs::path const& source, fs::path const& root) {
  File const* const merged = FindFile(report.files, source);
  if (std::error_code ignored; merged == nullptr || !fs::is_regular_file(report.path, ignored)) {
    return;
  }
  ReportReader reader(report.path);
  reader.PassOverMark();
  const bool isStructured = reader.ReadStructured().has_value();
  SourcePaths paths;
  for (File record; !isStructured && reader.Next(record);) {
    if (paths.Relative(record.path, root).relative.native() == source.native()) {
      Count(record.lines);
    }
  }
  ThrowIf(WhyNotRead(reader));
  if (isStructured) {
    return;
  }
  merged->lines.clear();
  for (auto const& [number, listed] : m_lines) {
    merged->lines.push_back(listed.line);
  }
}

void RecordShares::Count(std::vector<Line> const& lines) {
  ++m_count;
  for (Line const& line : lines) {
    auto [known, end] = m_lines.equal_range(line.line);
    known = std::find_if(known, end, [&line](auto const& one) { return one.second.line == line; });
    if (known == end) {
      known = m_lines.emplace_hint(end, line.line, Listed{line});
    }
    ++known->second.records;
  }
}

std::string RecordShares::Share(Vote const& vote) const {
  const auto listed = std::ranges::find_if(m_lines, [&vote](auto const& one) {
    return vote.line != nullptr && one.second.line == *vote.line;
  });
  if (listed == m_lines.end() || listed->second.records >= m_count) {
    return {};
  }
  return std::format(" in {} of {} records", listed->second.records, m_count);
}

}  // namespace companion
