#include "companion/page/page_data.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <format>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "companion/output/parallel_in_order.h"
#include "companion/page/page_source.h"
#include "companion/page/page_source_json.h"
#include "companion/page/page_string.h"
#include "companion/reports/equal_reports.h"
#include "companion/sources/line_picker.h"
#include "companion/sources/obstacles.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

/// What one report lists.
struct Sums {
  explicit Sums(Files const& listed) : files(listed.files.size()) {
    for (File const& file : listed.files) {
      lines += file.lines.size();
      for (Line const& line : file.lines) {
        markers += line.markers.size();
      }
    }
  }

  std::size_t files = 0;
  std::size_t lines = 0;
  std::size_t markers = 0;
};

/// How many lines to show around each listed one. Where there are many, a page with such lines
/// would be too large to send; the one before a marker tells most.
LinePicker::Around LinesAround(Reports const& reports) {
  constexpr std::size_t many = 20'000;
  constexpr std::size_t more = 30'000;
  constexpr std::size_t most = 50'000;
  std::size_t lines = 0;
  for (Report const& report : reports.each) {
    lines = std::max(lines, Sums(report.files).lines);
  }
  return {.before = lines > most   ? 0U
                    : lines > many ? 1U
                                   : 2U,
          .behind = lines > more   ? 0U
                    : lines > many ? 1U
                                   : 2U};
}

/// The name of the folder: not where it is on this machine, which is none of a reader's business.
std::string NameOf(fs::path const& root) {
  const fs::path whole = fs::canonical(root);
  return (whole.has_filename() ? whole.filename() : whole).string();
}

std::string ReportsJson(Reports const& reports) {
  std::string json;
  for (Report const& report : reports.each) {
    const Sums sums(report.files);
    json += json.empty() ? "[" : ",[";
    AppendPageString(json, report.path.native());
    json += std::format(",{},{}]", sums.files, sums.markers);
  }
  return json;
}

std::string EqualJson(Reports const& reports) {
  std::string json = "[";
  for (auto const& [report, first] : EqualReports(reports)) {
    json += std::format("{}[{},{}]", json.size() > 1 ? "," : "", report, first);
  }
  return json += "]";
}

std::string TextsJson(std::vector<std::string> const& texts) {
  std::string json = "[";
  for (std::string const& text : texts) {
    json += json.size() > 1 ? "," : "";
    AppendPageString(json, text);
  }
  return json += "]";
}

/// The words for a problem, which come before the source's name.
std::string WithoutSource(MaybeProblem const& problem, fs::path const& source) {
  const std::size_t nameSize = source.native().size() + std::string_view(": ").size();
  return problem ? problem->text.substr(0, problem->text.size() - nameSize) : std::string();
}

void WriteFiles(ResultFile& file, Reports const& reports, fs::path const& root,
                LinePicker::Around around, PageSourceJson& json, Console& console) {
  const std::vector<fs::path> paths = NamedSources(reports);
  Obstacles obstacles(root, reports.agreed);
  const auto inTheWayOf = [&](fs::path const& path, PageSource const& source) {
    File const* const agreed = FindFile(reports.agreed, path);
    const bool isToClean = agreed != nullptr && source.condition == SourceCondition::AsAnalyzed;
    return isToClean ? WithoutSource(obstacles.InTheWayOf(*agreed, false), root / path)
                     : std::string();
  };
  std::string_view comma;
  ParallelInOrder<PageSource>(
      paths.size(),
      [&](std::size_t index) { return ReadPageSource(reports, paths[index], root, around); },
      [&](std::size_t index, PageSource const& source) {
        if (!source.lines.empty()) {
          file.Write(comma);
          file.Write(json.Of(paths[index], source, inTheWayOf(paths[index], source), reports));
          comma = ",\n";
        }
        console.Progress(index + 1, paths.size());
        return true;
      });
}

}  // namespace

void WritePageData(ResultFile& file, Reports const& reports, PageOrigin const& origin,
                   Console& console) {
  using std::chrono::minutes;
  using std::chrono::system_clock;
  const LinePicker::Around around = LinesAround(reports);
  std::string head = "{\"root\":";
  AppendPageString(head, NameOf(origin.root));
  head += ",\"typed\":";
  AppendPageString(head, origin.root.is_relative() ? origin.root.string() : NameOf(origin.root));
  std::format_to(std::back_inserter(head),
                 R"(,"made":"{:%F %R} UTC","version":"{}","reports":[{}],"warnings":{},"equal":{},)"
                 R"("filters":[{},{},{},{}],"around":[{},{}],"files":[)",
                 std::chrono::floor<minutes>(system_clock::now()), QLN_VERSION,
                 ReportsJson(reports), TextsJson(origin.warnings), EqualJson(reports),
                 TextsJson(origin.codes), TextsJson(origin.withoutCodes), TextsJson(origin.paths),
                 TextsJson(origin.without), around.before, around.behind);
  file.Write(head);
  PageSourceJson json;
  WriteFiles(file, reports, origin.root, around, json, console);
  file.Write("],\"codes\":" + json.Codes() + ",\"votes\":" + json.Votes() + "}");
}

}  // namespace companion
