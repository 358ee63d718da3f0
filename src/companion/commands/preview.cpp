#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <format>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cleaner/marks_filter.h"
#include "companion/cleaning/with_blanks.h"
#include "companion/commands/check.h"
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
#include "merge/marker_text.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view StatByCode = "code";

/// How much is changed.
struct Amount {
  std::size_t markers = 0;
  std::size_t lines = 0;

  [[nodiscard]] std::string InWords() const {
    return Counted(markers, "marker") + " on " + Counted(lines, "line");
  }
};

struct Previewed {
  Patch patch{};
  std::size_t markers = 0;
  std::map<std::uint64_t, Amount> codes{};
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

std::map<std::uint64_t, Amount> AmountsByCode(std::vector<Line> const& lines) {
  std::map<std::uint64_t, Amount> amounts;
  for (Line const& line : lines) {
    std::set<std::uint64_t> codes;
    for (Marker const& marker : line.markers) {
      Amount& amount = amounts[marker.code];
      ++amount.markers;
      amount.lines += codes.insert(marker.code).second ? 1 : 0;
    }
  }
  return amounts;
}

/// What a cleanup changes that leaves the lines alone which are not safe to take out.
Previewed PreviewSafely(File file, fs::path const& root, bool takesBlanks) {
  Previewed previewed;
  PlannedCut source = MarksFilter(file).Preview(root);
  const std::vector<UnsafeLine> unsafe = UnsafeLines(file.lines, source.before);
  if (!unsafe.empty()) {
    for (UnsafeLine const& line : unsafe) {
      previewed.complaints.emplace_back(Words(line.danger),
                                        ComplaintOf(line, (root / file.path).string()));
    }
    file.lines = SafeLines(file.lines, unsafe);
  }
  previewed.markers = CountMarkers(file);
  previewed.codes = AmountsByCode(file.lines);
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
      : m_console(console), m_complaints(console, options.list), m_stat(options.stat) {}

  void Print(File const& file, Previewed const& previewed) {
    for (auto const& [kind, text] : previewed.complaints) {
      m_complaints.Add(kind, text);
    }
    if (previewed.patch.text.empty()) {
      return;
    }
    const Amount amount{previewed.markers, previewed.patch.changedLines};
    if (m_stat.empty()) {
      m_console.Out() << previewed.patch.text;
    } else if (m_stat == StatByFile) {
      PrintAmount(Printable(file.path.native()), amount);
    }
    ++m_files;
    AddUp(m_sum, amount);
    for (auto const& [code, ofCode] : previewed.codes) {
      AddUp(m_codes[code], ofCode);
    }
  }

  void Finish() {
    m_complaints.Finish();
    if (m_stat.empty()) {
      return;
    }
    for (auto const& [code, amount] : m_stat == StatByCode ? m_codes : Amounts()) {
      PrintAmount(code == 0 ? "no code" : DiagnosticCode(code), amount);
    }
    m_console.Out() << Counted(m_files, "file") << ", " << m_sum.InWords() << '\n';
  }

  [[nodiscard]] bool IsAnyChanged() const { return m_files > 0; }

 private:
  using Amounts = std::map<std::uint64_t, Amount>;

  static void AddUp(Amount& sum, Amount const& amount) {
    sum.markers += amount.markers;
    sum.lines += amount.lines;
  }

  void PrintAmount(std::string_view of, Amount const& amount) const {
    m_console.Out() << of << ": " << amount.InWords() << '\n';
  }

  Console& m_console;
  Complaints m_complaints;
  std::string_view m_stat;  ///< What is counted by; empty for patches.
  std::size_t m_files = 0;
  Amount m_sum;
  Amounts m_codes;
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

void PreviewAll(Files const& agreed, Options const& options, Console& console) {
  constexpr int somethingChanges = 3;
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
  if (options.exitCode && printer.IsAnyChanged()) {
    console.EndWith(somethingChanges);
  }
}

}  // namespace

void Preview(Options const& options, Console& console) {
  if (!options.stat.empty() && options.stat != StatByFile && options.stat != StatByCode) {
    throw std::runtime_error("--stat counts by file or by code, not by " + options.stat);
  }
  if (!options.exitCode) {
    PreviewAll(options.complete ? ReadCompletelyAgreed(options, console) : ReadNarrowed(options),
               options, console);
  } else if (const auto agreed = AgreedIfAllIsWell(options, console)) {
    PreviewAll(*agreed, options, console);
  }
}

}  // namespace companion
