#include "companion/commands/commands.h"
#include "companion/commands/output_check.h"
#include "companion/output/result_file.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "merge/writing/structured_report_writer.h"

namespace companion {

void Select(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  Files selected = ReadAgreed(options.reports, options.root);
  RefuseAsOutput(options, [&selected](std::filesystem::path const& path) {
    return FindFile(selected, path) != nullptr;
  });
  Narrow(selected, filters);
  ResultFile output(options.output, console);
  WriteStructuredReport(selected.version, selected.files, output.Stream());
  output.Finish();
}

}  // namespace companion
