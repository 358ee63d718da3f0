#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/commands/output_check.h"
#include "companion/output/result_file.h"
#include "companion/page/page_data.h"
#include "companion/page/page_frame.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

/// The reports, each once; of one given again there is a complaint.
std::vector<fs::path> GivenOnce(std::vector<fs::path> once, std::vector<std::string>& complaints) {
  std::vector<std::size_t> again = GivenAgain(once);
  for (const std::size_t report : again) {
    complaints.push_back(GivenTwice(once[report]));
  }
  for (; !again.empty(); again.pop_back()) {
    once.erase(once.begin() + static_cast<std::ptrdiff_t>(again.back()));
  }
  return once;
}

bool IsReadable(fs::path const& report, fs::path const& root) {
  try {
    return !ReadReports({report}, root).each.empty();
  } catch (std::exception const&) {  // Which the check has told.
    return false;
  }
}

/// The reports that can be read, broken ones included.
std::vector<fs::path> Readable(std::vector<fs::path> const& reports, CheckedReports const& checked,
                               fs::path const& root) {
  std::vector<fs::path> readable;
  for (std::size_t report = 0; report < reports.size(); ++report) {
    if (!checked.wrong[report] || IsReadable(reports[report], root)) {
      readable.push_back(reports[report]);
    }
  }
  return readable;
}

}  // namespace

void Page(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  PageOrigin origin{options.root,        {}, options.codes, options.paths, options.without,
                    options.withoutCodes};
  const std::vector<fs::path> paths = GivenOnce(options.reports, origin.warnings);
  std::ranges::for_each(origin.warnings, [&](std::string const& text) { console.Complain(text); });
  CheckedReports checked = CheckReports(paths, options.root, console);
  if (!checked.areWhole) {
    const std::vector<fs::path> readable = Readable(paths, checked, options.root);
    if (readable.empty()) {
      return;
    }
    checked.reports = ReadThoseThatAgree(readable, options.root, origin.warnings);
    for (Complaint const& wrong : checked.wrong) {
      origin.warnings.insert(origin.warnings.end(), wrong ? 1 : 0, wrong.value_or(""));
    }
  }
  RefuseAsOutput(options, [&](fs::path const& path) {
    return std::ranges::any_of(checked.reports.each, [&path](Report const& report) {
      return FindFile(report.files, path) != nullptr;
    });
  });
  Narrow(checked.reports, filters, checked.areWhole);
  ResultFile file(options.output, console);
  file.Write(PageFrame::Head());
  WritePageData(file, checked.reports, origin, console);
  file.Write(PageFrame::Tail());
  file.Finish();
}

}  // namespace companion
