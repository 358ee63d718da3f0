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

/// How many lines to show before and behind each listed one. Where there are many, a page with such
/// lines would be too large to send.
std::uint32_t LinesAround(Reports const& reports) {
  constexpr std::size_t many = 20'000;
  constexpr std::size_t veryMany = 50'000;
  std::size_t most = 0;
  for (Report const& report : reports.each) {
    most = std::max(most, Sums(report.files).lines);
  }
  return most > veryMany ? 0 : most > many ? 1 : 2;
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

std::string TextsJson(std::vector<std::string> const& texts) {
  std::string json = "[";
  for (std::string const& text : texts) {
    json += json.size() > 1 ? "," : "";
    AppendPageString(json, text);
  }
  return json += "]";
}

void WriteFiles(ResultFile& file, Reports const& reports, fs::path const& root,
                std::uint32_t around, PageSourceJson& json, Console& console) {
  const std::vector<fs::path> paths = NamedSources(reports);
  std::string_view comma;
  ParallelInOrder<PageSource>(
      paths.size(),
      [&](std::size_t index) { return ReadPageSource(reports, paths[index], root, around); },
      [&](std::size_t index, PageSource const& source) {
        if (!source.lines.empty()) {
          file.Write(comma);
          file.Write(json.Of(paths[index], source, reports));
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
  const std::uint32_t around = LinesAround(reports);
  std::string head = "{\"root\":";
  AppendPageString(head, NameOf(origin.root));
  std::format_to(std::back_inserter(head),
                 R"(,"made":"{:%F %R} UTC","version":"{}","reports":[{}],"warnings":{},)"
                 R"("filters":[{},{},{}],"around":{},"files":[)",
                 std::chrono::floor<minutes>(system_clock::now()), QLN_VERSION,
                 ReportsJson(reports), TextsJson(origin.warnings), TextsJson(origin.codes),
                 TextsJson(origin.paths), TextsJson(origin.without), around);
  file.Write(head);
  PageSourceJson json;
  WriteFiles(file, reports, origin.root, around, json, console);
  file.Write("],\"codes\":" + json.Codes() + ",\"votes\":" + json.Votes() + "}");
}

}  // namespace companion
