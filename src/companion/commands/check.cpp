#include "companion/commands/check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <format>
#include <string>
#include <utility>
#include <vector>

#include "cleaner/backup_name.h"
#include "companion/commands/commands.h"
#include "companion/output/counted.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/sources/obstacles.h"
#include "companion/sources/source_check.h"
#include "companion/sources/temporary_room.h"
#include "files/file_status.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

bool SaySame(Report const& one, Report const& other) {
  return !one.files.files.empty() &&
         std::ranges::equal(one.files.files, other.files.files, [](File const& a, File const& b) {
           return a.path == b.path && a.hash == b.hash && a.lines == b.lines;
         });
}

/// Takes in what was found of each source, and complains.
class Findings {
 public:
  Findings(Options const& options, Reports const& reports, IsExcused const& isExcused,
           Console& console)
      : m_options(options),
        m_reports(reports),
        m_isExcused(isExcused),
        m_console(console),
        m_obstacles(options.root, reports.agreed) {}

  void Add(fs::path const& path, CheckedSource const& source) {
    ++m_sources;
    m_markers += source.markers;
    AddSilence(path, source.isNamedBy);
    File const* const agreed = FindFile(m_reports.agreed, path);
    const bool isExcused = source.complaint && agreed != nullptr && m_isExcused(*agreed);
    if (source.complaint && !isExcused) {
      Complain(*source.complaint);
    }
    for (std::string const& complaint :
         ComplaintsOf(source.unsafe, (m_options.root / path).string())) {
      Complain(complaint);
    }
    if (agreed == nullptr) {
      return;
    }
    m_sizes.push_back(source.size);
    if (const Complaint obstacle =
            m_obstacles.InTheWayOf(*agreed, source.complaint || IsExcusedBackup(*agreed))) {
      Complain(*obstacle);
    }
  }

  void Finish() {
    if (m_sizes.empty()) {
      return;
    }
    if (const Complaint wrong = WrongWithTemporaryDirectory(m_sizes)) {
      Complain(*wrong);
    }
  }

  void Complain(std::string const& text) {
    m_console.Complain(text);
    m_isGood = false;
  }

  [[nodiscard]] bool IsGood() const { return m_isGood; }

  /// What was looked at.
  void Print() const {
    std::ostream& out = m_console.Out();
    out << std::format("{}, {}, {}; {}\n", Counted(m_reports.each.size(), "report"),
                       Counted(m_sources, "source"), Counted(m_markers, "marker"),
                       m_silent == 0 ? "every source is named by every report"
                                     : Counted(m_silent, "source") + " not named by every report");
    PrintEqualReports(out);
    out << m_list;
  }

 private:
  /// Reports of one content may be of configurations that agree, or one may have been copied.
  void PrintEqualReports(std::ostream& out) const {
    std::vector<Report> const& each = m_reports.each;
    for (std::size_t i = 1; i < each.size(); ++i) {
      const auto other = std::find_if(each.begin(), each.begin() + static_cast<std::ptrdiff_t>(i),
                                      [&](Report const& one) { return SaySame(one, each[i]); });
      if (&*other != &each[i]) {
        out << std::format("{} says the same as {}\n", Printable(each[i].path.native()),
                           Printable(other->path.native()));
      }
    }
  }

  /// Whether the cleanup that is to follow knows what to do with the backup of a whole source.
  [[nodiscard]] bool IsExcusedBackup(File const& file) const {
    return StatusAt(BackupOf(m_options.root / file.path)) && m_isExcused(file);
  }

  void AddSilence(fs::path const& path, std::vector<bool> const& isNamedBy) {
    std::string silent;
    for (std::size_t i = 0; i < isNamedBy.size(); ++i) {
      if (!isNamedBy[i]) {
        silent += (silent.empty() ? "" : ", ") + Printable(m_reports.each[i].path.native());
      }
    }
    if (silent.empty()) {
      return;
    }
    ++m_silent;
    if (m_options.list) {
      m_list +=
          std::format("{}: not named by {}\n", Printable((m_options.root / path).native()), silent);
    }
  }

  Options const& m_options;
  Reports const& m_reports;
  IsExcused const& m_isExcused;
  Console& m_console;
  Obstacles m_obstacles;
  std::size_t m_sources = 0;
  std::size_t m_markers = 0;
  std::size_t m_silent = 0;
  std::vector<std::uint64_t> m_sizes;  ///< Of what is to be cleaned.
  std::string m_list;
  bool m_isGood = true;
};

void CheckSources(Findings& findings, Reports const& reports, Options const& options,
                  Console& console) {
  const std::vector<fs::path> sources = NamedSources(reports);
  ParallelInOrder<CheckedSource>(
      sources.size(),
      [&](std::size_t index) { return CheckSource(reports, sources[index], options.root); },
      [&](std::size_t index, CheckedSource const& source) {
        findings.Add(sources[index], source);
        console.Progress(index + 1, sources.size());
        return true;
      });
  findings.Finish();
}

struct NarrowedReports {
  Reports reports;
  bool areWhole;
};

NarrowedReports ReadNarrowed(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  auto [reports, areWhole, wrong] = CheckReports(options.reports, options.root, console);
  Narrow(reports, filters, areWhole);
  return {std::move(reports), areWhole};
}

}  // namespace

void Check(Options const& options, Console& console) {
  const auto [reports, areWhole] = ReadNarrowed(options, console);
  const IsExcused never = [](File const& /*file*/) { return false; };
  Findings findings(options, reports, never, console);
  CheckSources(findings, reports, options, console);
  if (areWhole && findings.IsGood()) {
    console.Out() << "all is well\n";
  }
  findings.Print();
}

std::optional<Reports> CheckBefore(Options const& options, Console& console,
                                   IsExcused const& isExcused) {
  auto [reports, areWhole] = ReadNarrowed(options, console);
  Findings findings(options, reports, isExcused, console);
  CheckSources(findings, reports, options, console);
  return areWhole && findings.IsGood() ? std::optional(std::move(reports)) : std::nullopt;
}

}  // namespace companion
