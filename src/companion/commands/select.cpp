#include <cstddef>
#include <utility>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/commands/output_check.h"
#include "companion/output/result_file.h"
#include "companion/reports/read_reports.h"
#include "companion/selection/code_set.h"
#include "companion/selection/globs.h"
#include "merge/writing/structured_report_writer.h"

namespace companion {

namespace {

class Selection {
 public:
  explicit Selection(Options const& options) : m_options(options), m_codes(options.codes) {}

  [[nodiscard]] bool Takes(std::filesystem::path const& path) const {
    return (m_options.paths.empty() || MatchesAny(m_options.paths, path)) &&
           !MatchesAny(m_options.without, path);
  }

  [[nodiscard]] std::vector<Line> Cut(std::vector<Line> lines) const {
    std::vector<Line> cut;
    for (Line& line : lines) {
      const std::size_t left = std::erase_if(
          line.markers, [this](Marker const& one) { return !m_codes.Holds(one.code); });
      // A line that lists nothing from the start stays: uncut, the report is as a merge writes it.
      if (left == 0 || !line.markers.empty()) {
        cut.push_back(std::move(line));
      }
    }
    return cut;
  }

 private:
  Options const& m_options;
  CodeSet m_codes;
};

}  // namespace

void Select(Options const& options, Console& /*console*/) {
  const Selection selection(options);
  const Files agreed = ReadAgreed(options.reports, options.root);
  Files selected;
  for (File const& file : agreed.files) {
    if (selection.Takes(file.path)) {
      selected.files.insert(selected.files.end(),
                            File{file.version, file.path, file.hash, selection.Cut(file.lines)});
    }
  }
  selected.DeleteEmpty();
  RefuseAsOutput(options, [&agreed](std::filesystem::path const& path) {
    return FindFile(agreed, path) != nullptr;
  });
  ResultFile output(options.output);
  WriteStructuredReport(selected.version, selected.files, output.Stream());
  output.Finish();
}

}  // namespace companion
