#include <algorithm>
#include <cstddef>
#include <exception>
#include <format>
#include <string>
#include <utility>
#include <vector>

#include "cleaner/marks_filter.h"
#include "companion/cleaning/with_blanks.h"
#include "companion/commands/commands.h"
#include "companion/formats/patch.h"
#include "companion/output/complaint.h"
#include "companion/output/complaints.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/reports/source_records.h"
#include "companion/safety/cut_safety.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

struct Previewed {
  Patch patch{};
  std::size_t markers = 0;
  std::vector<std::pair<std::string, std::string>> complaints{};  ///< Kinds and texts.
};

/// A patch is applied in the root, and one line of it holds the name.
bool CanBeNamed(fs::path const& path) {
  return !path.empty() && path != "." && !path.is_absolute() && !HoldsControl(path.native()) &&
         std::ranges::none_of(path, [](fs::path const& part) { return part == ".."; });
}

Complaint WrongWithName(File const& file) {
  if (!CanBeNamed(file.path)) {
    return std::format("outside the root, or with control characters: \"{}\"",
                       Printable(file.PathToString({})));
  }
  if (file.path.native().ends_with(' ')) {
    return std::format("ends with a blank, and patch would change another file: \"{}\"",
                       Printable(file.path.native()));
  }
  return std::nullopt;
}

/// What a cleanup changes that leaves the lines alone which are not safe to take out.
Previewed PreviewSafely(File file, fs::path const& root, bool takesBlanks) {
  Previewed previewed;
  PlannedCut source = MarksFilter(file).Preview(root);
  const std::vector<UnsafeLine> unsafe = UnsafeLines(file.lines, source.before);
  if (!unsafe.empty()) {
    const std::vector<std::string> texts = ComplaintsOf(unsafe, (root / file.path).string());
    for (std::size_t i = 0; i < unsafe.size(); ++i) {
      previewed.complaints.emplace_back(Words(unsafe[i].danger), texts[i]);
    }
    file.lines = SafeLines(file.lines, unsafe);
  }
  previewed.markers = CountMarkers(file);
  if (takesBlanks) {
    file.lines = WithBlanks(file.lines, source.before);
  }
  if (takesBlanks || !unsafe.empty()) {
    source = file.lines.empty() ? PlannedCut() : MarksFilter(file).Preview(root);
  }
  previewed.patch = MakePatch(file.path.native(), source);
  return previewed;
}

Previewed PreviewOne(File const& file, Options const& options) {
  if (const Complaint wrong = WrongWithName(file)) {
    return {.complaints = {{KindOf(*wrong), *wrong}}};
  }
  try {
    return PreviewSafely(file, options.root, options.blanks);
  } catch (std::exception const& error) {
    return {.complaints = {{KindOf(error.what()), error.what()}}};
  }
}

/// Prints and adds up.
class Printer {
 public:
  Printer(Console& console, Options const& options)
      : m_console(console), m_complaints(console, options.list), m_isStat(options.stat) {}

  void Print(File const& file, Previewed const& previewed) {
    for (auto const& [kind, text] : previewed.complaints) {
      m_complaints.Add(kind, text);
    }
    if (!m_isStat) {
      m_console.Out() << previewed.patch.text;
    } else if (!previewed.patch.text.empty()) {
      const std::size_t lines = previewed.patch.changedLines;
      m_console.Out() << Printable(file.path.native()) << ": " << Sum(previewed.markers, lines)
                      << '\n';
      ++m_files;
      m_markers += previewed.markers;
      m_lines += lines;
    }
  }

  void Finish() {
    m_complaints.Finish();
    if (m_isStat) {
      m_console.Out() << Counted(m_files, "file") << ", " << Sum(m_markers, m_lines) << '\n';
    }
  }

 private:
  static std::string Sum(std::size_t markers, std::size_t lines) {
    return Counted(markers, "marker") + " on " + Counted(lines, "line");
  }

  Console& m_console;
  Complaints m_complaints;
  bool m_isStat;
  std::size_t m_files = 0;
  std::size_t m_markers = 0;
  std::size_t m_lines = 0;
};

Files ReadNarrowed(Options const& options) {
  const Filters filters = FiltersOf(options);
  Files agreed = ReadAgreed(options.reports, options.root);
  Narrow(agreed, filters);
  return agreed;
}

/// Nothing, with complaints, unless every report names every source.
Files ReadCompletelyAgreed(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  Reports reports = ReadReports(options.reports, options.root);
  Narrow(reports, filters);
  Complaints complaints(console, options.list);
  for (SourceRecords const& source : RecordsBySource(reports)) {
    if (source.all.size() < reports.each.size()) {
      complaints.Add(NotNamedByEvery((options.root / *source.path).string()));
    }
  }
  complaints.Finish();
  return complaints.AreNone() ? std::move(reports.agreed) : Files();
}

}  // namespace

void Preview(Options const& options, Console& console) {
  const Files agreed =
      options.complete ? ReadCompletelyAgreed(options, console) : ReadNarrowed(options);
  std::vector<File const*> files;
  for (File const& file : agreed.files) {
    files.push_back(&file);
  }
  Printer printer(console, options);
  ParallelInOrder<Previewed>(
      files.size(), [&](std::size_t index) { return PreviewOne(*files[index], options); },
      [&](std::size_t index, Previewed const& previewed) {
        printer.Print(*files[index], previewed);
        console.Progress(index + 1, files.size());
        return console.IsHeard();
      });
  printer.Finish();
}

}  // namespace companion
