#include <algorithm>
#include <charconv>
#include <cstdint>
#include <format>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/output/printable.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/reports/record_shares.h"
#include "companion/reports/source_records.h"
#include "companion/reports/vote_words.h"
#include "companion/sources/excerpt_lines.h"
#include "companion/sources/other_machine.h"
#include "companion/sources/source_excerpt.h"
#include "files/file_status.h"
#include "merge/paths/weakly_canonical.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

bool IsNamed(Reports const& reports, fs::path const& path) {
  return std::ranges::any_of(reports.each, [&path](Report const& report) {
    return FindFile(report.files, path) != nullptr;
  });
}

/// The path that reports have for what was typed: relative to the root, or to the current folder.
std::optional<fs::path> FindSource(Reports const& reports, fs::path const& typed,
                                   fs::path const& root) {
  const fs::path canonicalRoot = WeaklyCanonical(root);
  for (fs::path const& path :
       {typed, typed.lexically_normal(), WeaklyCanonical(typed).lexically_relative(canonicalRoot),
        WeaklyCanonical(root / typed).lexically_relative(canonicalRoot)}) {
    if (IsNamed(reports, path)) {
      return path;
    }
  }
  return std::nullopt;
}

/// What FILE, FILE:LINE or FILE:LINE:COLUMN stands for.
struct Place {
  fs::path path;
  std::optional<std::uint32_t> line;
};

/// Takes a colon and a number off the end.
std::optional<std::uint32_t> TakeNumber(std::string_view& typed) {
  const std::size_t colon = typed.rfind(':');
  if (colon == std::string_view::npos) {
    return std::nullopt;
  }
  std::uint32_t number = 0;
  const char* const end = typed.data() + typed.size();
  const auto [rest, error] = std::from_chars(typed.data() + colon + 1, end, number);
  typed = typed.substr(0, colon);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

/// Compilers print a colon behind the place, too.
std::optional<Place> FindPlace(Reports const& reports, std::string_view typed,
                               fs::path const& root) {
  constexpr int mostNumbers = 2;
  Place place;
  for (int numbers = 0; numbers <= mostNumbers; ++numbers) {
    if (const auto path = FindSource(reports, typed, root)) {
      place.path = *path;
      return place;
    }
    typed.remove_suffix(numbers == 0 && typed.ends_with(':') ? 1 : 0);
    place.line = TakeNumber(typed);
    if (!place.line) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

/// Why no report may name what was typed.
void ComplainOfUnnamed(Reports const& reports, Options const& options, Console& console) {
  console.Complain("no report names " + options.source);
  const std::vector<SourceRecords> sources = RecordsBySource(reports);
  if (const Complaint hint = HintOfOtherMachine(sources, options.root)) {
    console.Complain(*hint);
  } else if (!sources.empty() && std::ranges::none_of(sources, [&](SourceRecords const& source) {
               return StatusAt(options.root / *source.path).has_value();
             })) {
    console.Complain(
        "no source that they name is there: relative paths in a raw report count from the current "
        "folder");
  }
}

/// Why a cleanup leaves the source although its line goes; empty when it does not.
std::string_view ButOf(SourceCondition condition) {
  switch (condition) {
    case SourceCondition::Missing:
      return "but there is no such source";
    case SourceCondition::Changed:
      return "but the source is not the one that was analyzed, and a cleanup leaves it";
    case SourceCondition::Unreadable:
      return "but the source cannot be read";
    case SourceCondition::AsAnalyzed:
      break;
  }
  return {};
}

bool IsRead(SourceCondition condition) {
  return condition == SourceCondition::AsAnalyzed || condition == SourceCondition::Changed;
}

class Explanation {
 public:
  Explanation(Reports const& reports, std::vector<RecordShares> const& records,
              fs::path const& path, SourceExcerpt const& source, Console& console)
      : m_reports(reports),
        m_records(records),
        m_name(Printable(path.native())),
        m_source(source),
        m_texts(source.hunks),
        m_out(console.Out()) {}

  void Print(LineVotes const& line) {
    const std::string codes = CodesOf(line.markers);
    m_out << std::format("{}:{}: {}{}\n", m_name, line.line, codes.empty() ? "" : codes + " ",
                         line.goes ? "goes" : "stays");
    for (std::size_t i = 0; i < line.votes.size(); ++i) {
      Report const& report = m_reports.each[i];
      m_out << std::format(
          "    {}: {}\n", Printable(report.path.native()),
          Phrase(line.votes[i], report, line.VotedOn()) + m_records[i].Share(line.votes[i]));
    }
    PrintSource(line.line);
    if (line.goes) {
      PrintBut(line.line);
    }
  }

  /// The line that was asked for, and that no report lists.
  void PrintUnlisted(std::uint32_t number) {
    m_out << std::format("{}:{}: listed by no report{}, and so left as it is\n", m_name, number,
                         m_reports.codes.TakesAll() ? "" : " with such a code");
    PrintSource(number);
  }

 private:
  void PrintSource(std::uint32_t number) {
    std::string shown(m_texts.Of(number));
    if (!shown.empty()) {
      std::ranges::replace(shown, '\t', ' ');
      m_out << "    | " << Printable(shown) << '\n';
    }
  }

  /// Why a cleanup leaves the line although it goes.
  void PrintBut(std::uint32_t number) {
    const std::string_view but = ButOf(m_source.condition);
    const CutDanger danger = DangerOf(m_source.unsafe, number);
    if (!but.empty()) {
      m_out << "    " << but << '\n';
    } else if (danger != CutDanger::None) {
      m_out << "    goes, but not safe to take out: " << Words(danger) << '\n';
    }
  }

  Reports const& m_reports;
  std::vector<RecordShares> const& m_records;  ///< By report.
  std::string m_name;
  SourceExcerpt const& m_source;
  ExcerptLines m_texts;
  std::ostream& m_out;
};

std::vector<RecordShares> SharesOf(Reports& reports, fs::path const& source, fs::path const& root) {
  std::vector<RecordShares> records;
  records.reserve(reports.each.size());
  for (Report& report : reports.each) {
    records.emplace_back(report, source, root);
  }
  return records;
}

/// Of all lines that some report lists, or of the one that was asked for.
std::vector<LineVotes> VotesAt(Place const& place, Reports const& reports) {
  std::vector<LineVotes> votes = VotesOn(reports, place.path);
  if (place.line) {
    std::erase_if(votes, [&](LineVotes const& line) { return line.line != *place.line; });
  }
  return votes;
}

void ExplainPlace(Place const& place, Reports& reports, fs::path const& root, Console& console) {
  const std::vector<RecordShares> records = SharesOf(reports, place.path, root);
  const std::vector<LineVotes> votes = VotesAt(place, reports);
  const bool isUnlisted = votes.empty() && place.line;
  std::vector<std::uint32_t> numbers;
  std::ranges::transform(votes, std::back_inserter(numbers), &LineVotes::line);
  if (isUnlisted) {
    numbers.push_back(*place.line);
  }
  const SourceExcerpt source = ReadExcerpt(reports, place.path, root, numbers, {});
  const fs::path path = root / place.path;
  if (place.line && source.hunks.empty() && IsRead(source.condition)) {
    console.Complain(std::format("no such line: {}:{}", path.string(), *place.line));
    return;
  }
  Explanation explanation(reports, records, path, source, console);
  if (isUnlisted) {
    explanation.PrintUnlisted(*place.line);
  }
  std::ranges::for_each(votes, [&](LineVotes const& line) { explanation.Print(line); });
}

}  // namespace

void Explain(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  Reports reports = ReadReports(options.reports, options.root);
  Narrow(reports, filters);
  if (const auto place = FindPlace(reports, options.source, options.root)) {
    ExplainPlace(*place, reports, options.root, console);
  } else {
    ComplainOfUnnamed(reports, options, console);
  }
}

}  // namespace companion
