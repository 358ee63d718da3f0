#include <algorithm>
#include <cstddef>
#include <exception>
#include <format>
#include <string>
#include <vector>

#include "cleaner/marks_filter.h"
#include "companion/commands/commands.h"
#include "companion/formats/patch.h"
#include "companion/output/complaint.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/safety/cut_safety.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

struct Previewed {
  Patch patch{};
  std::size_t markers = 0;
  std::vector<std::string> complaints{};
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
Previewed PreviewSafely(File file, fs::path const& root) {
  Previewed previewed;
  PlannedCut source = MarksFilter(file).Preview(root);
  const std::vector<UnsafeLine> unsafe = UnsafeLines(file.lines, source.before);
  if (!unsafe.empty()) {
    previewed.complaints = ComplaintsOf(unsafe, (root / file.path).string());
    file.lines = SafeLines(file.lines, unsafe);
    source = file.lines.empty() ? PlannedCut() : MarksFilter(file).Preview(root);
  }
  previewed.patch = MakePatch(file.path.native(), source);
  previewed.markers = CountMarkers(file);
  return previewed;
}

Previewed PreviewOne(File const& file, fs::path const& root) {
  if (const Complaint wrong = WrongWithName(file)) {
    return {.complaints = {*wrong}};
  }
  try {
    return PreviewSafely(file, root);
  } catch (std::exception const& error) {
    return {.complaints = {error.what()}};
  }
}

/// Prints and adds up.
class Printer {
 public:
  Printer(Console& console, bool isStat) : m_console(console), m_isStat(isStat) {}

  void Print(File const& file, Previewed const& previewed) {
    for (std::string const& complaint : previewed.complaints) {
      m_console.Complain(complaint);
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

  void PrintSums() {
    if (m_isStat) {
      m_console.Out() << Counted(m_files, "file") << ", " << Sum(m_markers, m_lines) << '\n';
    }
  }

 private:
  static std::string Sum(std::size_t markers, std::size_t lines) {
    return Counted(markers, "marker") + " on " + Counted(lines, "line");
  }

  Console& m_console;
  bool m_isStat;
  std::size_t m_files = 0;
  std::size_t m_markers = 0;
  std::size_t m_lines = 0;
};

}  // namespace

void Preview(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  Files agreed = ReadAgreed(options.reports, options.root);
  Narrow(agreed, filters);
  std::vector<File const*> files;
  for (File const& file : agreed.files) {
    files.push_back(&file);
  }
  Printer printer(console, options.stat);
  ParallelInOrder<Previewed>(
      files.size(), [&](std::size_t index) { return PreviewOne(*files[index], options.root); },
      [&](std::size_t index, Previewed const& previewed) {
        printer.Print(*files[index], previewed);
        console.Progress(index + 1, files.size());
        return console.IsHeard();
      });
  printer.PrintSums();
}

}  // namespace companion
