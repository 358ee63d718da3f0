#include "tree/page_data.h"

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

#include "tree/in_order.h"
#include "tree/page_source.h"
#include "tree/page_source_json.h"
#include "tree/page_string.h"

namespace tree {

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

/// How many lines to show before and behind each listed one. Where there are very many, a page with
/// such lines would be too large to send.
std::uint32_t LinesAround(Reports const& reports) {
  constexpr std::size_t many = 50'000;
  const bool isLarge = std::ranges::any_of(
      reports.each, [](Report const& report) { return Sums(report.files).lines > many; });
  return isLarge ? 0 : 2;
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

void WriteFiles(OutputFile& file, Reports const& reports, fs::path const& root,
                PageSourceJson& json, Console& console) {
  const std::vector<fs::path> paths = NamedSources(reports);
  const std::uint32_t around = LinesAround(reports);
  std::string_view comma;
  InOrder<PageSource>(
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

void WritePageData(OutputFile& file, Reports const& reports, Options const& options,
                   Console& console) {
  using std::chrono::minutes;
  using std::chrono::system_clock;
  std::string head = "{\"root\":";
  AppendPageString(head, NameOf(options.root));
  std::format_to(
      std::back_inserter(head), R"(,"made":"{:%F %R} UTC","version":"{}","reports":[{}],"files":[)",
      std::chrono::floor<minutes>(system_clock::now()), QLN_VERSION, ReportsJson(reports));
  file.Write(head);
  PageSourceJson json;
  WriteFiles(file, reports, options.root, json, console);
  file.Write("],\"codes\":" + json.Codes() + ",\"votes\":" + json.Votes() + "}");
}

}  // namespace tree
