#include "tree/check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <format>
#include <string>
#include <utility>
#include <vector>

#include "tree/counted.h"
#include "tree/in_order.h"
#include "tree/obstacles.h"
#include "tree/printable.h"
#include "tree/report_check.h"
#include "tree/source_check.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

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
    if (!source.complaint.empty() && (agreed == nullptr || !m_isExcused(*agreed))) {
      Complain(source.complaint);
    }
    if (agreed == nullptr) {
      return;
    }
    m_sizes.push_back(source.size);
    if (const std::string obstacle = m_obstacles.InTheWayOf(*agreed); !obstacle.empty()) {
      Complain(obstacle);
    }
  }

  void Finish() {
    if (m_sizes.empty()) {
      return;
    }
    if (const std::string wrong = WrongWithTemporaryDirectory(m_sizes); !wrong.empty()) {
      Complain(wrong);
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
    out << m_list;
  }

 private:
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
  InOrder<CheckedSource>(
      sources.size(),
      [&](std::size_t index) { return CheckSource(reports, sources[index], options.root); },
      [&](std::size_t index, CheckedSource const& source) {
        findings.Add(sources[index], source);
        console.Progress(index + 1, sources.size());
        return true;
      });
  findings.Finish();
}

}  // namespace

void Check(Options const& options, Console& console) {
  const auto [reports, areWhole] = CheckReports(options.reports, options.root, console);
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
  auto [reports, areWhole] = CheckReports(options.reports, options.root, console);
  Findings findings(options, reports, isExcused, console);
  CheckSources(findings, reports, options, console);
  return areWhole && findings.IsGood() ? std::optional(std::move(reports)) : std::nullopt;
}

}  // namespace tree
