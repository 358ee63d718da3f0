#include "tree/preview.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <format>
#include <string>
#include <vector>

#include "cleaner/marks_filter.h"
#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/patch.h"
#include "tree/printable.h"
#include "tree/reports.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

struct Previewed {
  Patch patch{};
  std::size_t markers = 0;
  std::string complaint{};  ///< Empty when all is well.
};

/// A patch is applied in the root, and one line of it holds the name.
bool CanBeNamed(fs::path const& path) {
  return !path.empty() && path != "." && !path.is_absolute() && !HoldsControl(path.native()) &&
         std::ranges::none_of(path, [](fs::path const& part) { return part == ".."; });
}

Previewed PreviewOne(File const& file, fs::path const& root) {
  if (!CanBeNamed(file.path)) {
    return {.complaint = std::format("outside the root, or with control characters: \"{}\"",
                                     Printable(file.PathToString({})))};
  }
  try {
    const FilteredSource source = MarksFilter(file).Preview(root);
    return {.patch = MakePatch(file.path.native(), source), .markers = CountMarkers(file)};
  } catch (std::exception const& error) {
    return {.complaint = error.what()};
  }
}

/// Prints and adds up.
class Printer {
 public:
  Printer(Console& console, bool isStat) : m_console(console), m_isStat(isStat) {}

  void Print(File const& file, Previewed const& previewed) {
    if (!previewed.complaint.empty()) {
      m_console.Complain(previewed.complaint);
    } else if (!m_isStat) {
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
  const Files agreed = ReadAgreed(options.reports, options.root);
  std::vector<File const*> files;
  for (File const& file : agreed.files) {
    files.push_back(&file);
  }
  Printer printer(console, options.stat);
  InOrder<Previewed>(
      files.size(), [&](std::size_t index) { return PreviewOne(*files[index], options.root); },
      [&](std::size_t index, Previewed const& previewed) {
        printer.Print(*files[index], previewed);
        console.Progress(index + 1, files.size());
        return console.IsHeard();
      });
  printer.PrintSums();
}

}  // namespace tree
