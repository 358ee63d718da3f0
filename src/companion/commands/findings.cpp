#include "companion/commands/findings.h"

#include <format>
#include <utility>

#include "cleaner/backup_name.h"
#include "companion/output/counted.h"
#include "companion/output/printable.h"
#include "companion/reports/equal_reports.h"
#include "companion/sources/temporary_room.h"
#include "files/file_status.h"

namespace companion {

namespace {

using Kind = SourceProblem::Kind;

/// For the sums; empty for what is not skipped.
std::string_view WhyLeft(Kind kind) {
  switch (kind) {
    case Kind::Changed:
    case Kind::OtherLineEnds:
      return "changed since the analysis";
    case Kind::Gone:
      return "gone";
    case Kind::Forbidden:
      return "that may not be written or read";
    case Kind::Other:
      break;
  }
  return {};
}

std::string_view WhyLeft(CutDanger danger) {
  switch (danger) {
    case CutDanger::InString:
      return "with the marker in a string";
    case CutDanger::TextBehind:
      return "with text behind the marker";
    case CutDanger::CodeBehind:
      return "with code behind the marker";
    case CutDanger::NextLine:
      return "in front of one that would be read differently";
    case CutDanger::None:
    case CutDanger::NoMarker:
      break;
  }
  return "without the marker";
}

}  // namespace

Findings::Findings(Options const& options, Reports const& reports, IsExcused const& isExcused,
                   Console& console)
    : m_options(options),
      m_reports(reports),
      m_isExcused(isExcused),
      m_console(console),
      m_complaints(console, options.list),
      m_obstacles(options.root, reports.agreed) {}

void Findings::Add(SourceRecords const& records) {
  ++m_sources;
  m_markers += CountDifferentMarkers(records, m_reports.codes);
  AddSilence(records);
}

void Findings::Add(SourceRecords const& records, CheckedSource const& source) {
  ++m_lookedAt;
  File const* const agreed = FindFile(m_reports.agreed, *records.path);
  if (const MaybeProblem problem = ProblemOf(agreed, source)) {
    ++m_problems[problem->kind];
    Tell(*problem);
    return;
  }
  Tell((m_options.root / *records.path).string(), source.unsafe);
  if (agreed != nullptr) {
    m_sizes.push_back(source.size);
    m_cleanable.files.files.insert(
        m_cleanable.files.files.end(),
        File{agreed->version, agreed->path, agreed->hash, SafeLines(agreed->lines, source.unsafe)});
  }
}

MaybeProblem Findings::ProblemOf(File const* agreed, CheckedSource const& source) {
  if (agreed == nullptr || (source.problem && !m_isExcused(*agreed))) {
    return source.problem;
  }
  return m_obstacles.InTheWayOf(*agreed, source.problem || IsExcusedBackup(*agreed));
}

/// Whether the cleanup that is to follow knows what to do with the backup of a whole source.
bool Findings::IsExcusedBackup(File const& file) const {
  return StatusAt(BackupOf(m_options.root / file.path)) && m_isExcused(file);
}

void Findings::Tell(SourceProblem const& problem) {
  const std::string_view why = WhyLeft(problem.kind);
  if (m_options.skip && !why.empty()) {
    m_console.Note(problem.text);
    ++m_cleanable.left[{"file", std::string(why)}];
  } else {
    m_complaints.Add(problem.text);
    ++m_cleanable.refused;
  }
}

void Findings::Tell(std::string const& source, std::vector<UnsafeLine> const& unsafe) {
  for (UnsafeLine const& line : unsafe) {
    if (m_options.skip) {
      m_console.Note(ComplaintOf(line, source));
      ++m_cleanable.left[{"line", std::string(WhyLeft(line.danger))}];
    } else {
      m_complaints.Add(Words(line.danger), ComplaintOf(line, source));
    }
  }
}

void Findings::AddSilence(SourceRecords const& records) {
  constexpr std::size_t mostNamed = 10;
  const std::size_t silent = m_reports.each.size() - records.all.size();
  if (silent == 0) {
    return;
  }
  ++m_silent;
  const std::string source = (m_options.root / *records.path).string();
  if (m_options.complete) {
    m_complaints.Add(NotNamedByEvery(source));
  }
  if (!m_options.list) {
    return;
  }
  std::string names;
  auto naming = records.all.begin();
  for (std::size_t i = 0, named = 0; i < m_reports.each.size() && named < mostNamed; ++i) {
    if (naming != records.all.end() && naming->first == i) {
      ++naming;
    } else {
      names += (named++ == 0 ? "" : ", ") + Printable(m_reports.each[i].path.native());
    }
  }
  m_list += std::format(
      "{}: not named by {}{}\n", Printable(source), names,
      silent > mostNamed ? std::format(" and {} more", WithSeparators(silent - mostNamed)) : "");
}

void Findings::Finish() {
  m_complaints.Finish();
  TellLikelyCause();
  if (m_sizes.empty()) {
    return;
  }
  if (const Complaint wrong = WrongWithTemporaryDirectory(m_sizes)) {
    m_console.Complain(*wrong);
    m_isGood = false;
  }
}

/// When most sources fail in one way.
void Findings::TellLikelyCause() {
  const std::size_t lineEnds = m_problems[Kind::OtherLineEnds];
  const std::size_t changed = m_problems[Kind::Changed] + lineEnds;
  if (changed < 2 || changed * 2 <= m_lookedAt) {
    return;
  }
  m_console.Note(std::format(
      "{} of {} sources are not those that were analyzed: {}", WithSeparators(changed),
      WithSeparators(m_lookedAt),
      lineEnds * 2 > changed ? "they have other line ends, as a checkout can make them"
                             : "another commit may be checked out, or the root is another folder"));
}

std::optional<Cleanable> Findings::TakeCleanable() {
  const bool isCleanable = m_options.skip ? CouldSkip() : IsGood();
  return isCleanable ? std::optional(std::move(m_cleanable)) : std::nullopt;
}

void Findings::Print(bool areWhole) const {
  std::ostream& out = m_console.Out();
  out << std::format("{}, {}, {}; {}\n", Counted(m_reports.each.size(), "report"),
                     Counted(m_sources, "source"), Counted(m_markers, "marker"),
                     m_silent > 0 ? Counted(m_silent, "source") + " not named by every report"
                     : areWhole   ? "every source is named by every report"
                                  : "not all reports could be read");
  for (auto const& [one, other] : EqualReports(m_reports)) {
    out << std::format("{} says the same as {}\n", Printable(m_reports.each[one].path.native()),
                       Printable(m_reports.each[other].path.native()));
  }
  out << m_list;
}

}  // namespace companion
