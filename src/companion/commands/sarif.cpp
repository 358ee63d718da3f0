#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/formats/sarif_log.h"
#include "companion/formats/warnings.h"
#include "companion/output/complaints.h"
#include "companion/output/parallel_in_order.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/sources/redundant_markers.h"
#include "converter/mirex_errors.h"
#include "fill_template.h"
#include "merge/marker_text.h"

namespace companion {

namespace {

/// A marker without a number has no code, and so no result.
std::set<std::string> CodesIn(Files const& agreed) {
  std::set<std::uint64_t> numbers;
  for (File const& file : agreed.files) {
    for (Line const& line : file.lines) {
      std::ranges::for_each(line.markers, [&](Marker const& one) { numbers.insert(one.code); });
    }
  }
  numbers.erase(0);
  std::set<std::string> codes;
  std::ranges::for_each(numbers, [&](std::uint64_t one) { codes.insert(DiagnosticCode(one)); });
  return codes;
}

void Add(RedundantMarker const& marker, std::string const& path, SarifLog& log) {
  if (marker.code == 0) {
    return;
  }
  const std::string code = DiagnosticCode(marker.code);
  const std::string message =
      FillTemplate(MirexErrors::RedundantFA(), {std::to_string(marker.code)});
  const SarifRegion region{marker.line, marker.line, marker.column, marker.offset, marker.length};
  log.Add({code, message, {{path, region}}, marker.danger == CutDanger::None});
}

}  // namespace

void Sarif(Options const& options, Console& console) {
  const Warnings warnings(options.reports.front());
  std::set<std::string> codes;
  for (FoundWarning const& warning : warnings.All()) {
    codes.insert(*warning.code);
  }
  SarifLog log(console.Out(), codes);
  for (FoundWarning const& warning : warnings.All()) {
    SarifResult result{*warning.code, *warning.message, {}};
    for (WarningPlace const& place : warning.places) {
      result.places.push_back({*place.file, {place.line, place.endLine}});
    }
    log.Add(result);
  }
  log.Finish();
}

void SarifOfReports(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  Files agreed = ReadAgreed(options.reports, options.root);
  Narrow(agreed, filters);
  std::vector<File const*> files;
  std::ranges::for_each(agreed.files, [&files](File const& file) { files.push_back(&file); });
  SarifLog log(console.Out(), CodesIn(agreed));
  Complaints complaints(console, options.list);
  ParallelInOrder<RedundantMarkers>(
      files.size(),
      [&](std::size_t index) { return FindRedundantMarkers(*files[index], options.root); },
      [&](std::size_t index, RedundantMarkers const& found) {
        const std::string path = (options.prefix / files[index]->path).lexically_normal().string();
        for (RedundantMarker const& marker : found.markers) {
          Add(marker, path, log);
        }
        for (std::string const& complaint : found.complaints) {
          complaints.Add(complaint);
        }
        console.Progress(index + 1, files.size());
        return console.IsHeard();
      });
  log.Finish();
  complaints.Finish();
}

}  // namespace companion
