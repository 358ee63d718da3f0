#include <algorithm>
#include <cstddef>
#include <format>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "companion/commands/commands.h"
#include "companion/output/complaints.h"
#include "companion/output/parallel_in_order.h"
#include "companion/output/printable.h"
#include "companion/reports/narrow.h"
#include "companion/reports/read_reports.h"
#include "companion/reports/vote_words.h"
#include "companion/sources/redundant_markers.h"
#include "companion/sources/source_check.h"
#include "companion/sources/source_excerpt.h"
#include "merge/marker_text.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

/// What is printed of one source.
struct Listed {
  std::string text;
  std::vector<std::string> complaints;
};

/// One line as compilers print theirs; columns are in bytes. A marker may have no code.
std::string LineOf(std::string const& name, std::uint64_t line, std::uint64_t column,
                   std::uint64_t code, std::string_view before, std::string const& behind) {
  return std::format("{}:{}:{}: {}marker{}{}{}\n", name, line, column, before,
                     code == 0 ? "" : std::format(" {}{}", MarkerBegin, code), behind,
                     code == 0 ? "" : std::format(" [{}]", DiagnosticCode(code)));
}

Listed ListGoing(File const& file, fs::path const& root) {
  const std::string name = Printable((root / file.path).native());
  RedundantMarkers found = FindRedundantMarkers(file, root);
  Listed listed{{}, std::move(found.complaints)};
  for (RedundantMarker const& marker : found.markers) {
    const bool isSafe = marker.danger == CutDanger::None;
    listed.text +=
        LineOf(name, marker.line, marker.byteColumn, marker.code, "warning: redundant ",
               isSafe ? "" : std::format(", but not safe to take out: {}", Words(marker.danger)));
  }
  return listed;
}

bool Keeps(Vote const& vote, Report const& report) {
  return vote.kind == Vote::Kind::DoesNotNameTheFile ? report.isRestricting
                                                     : vote.kind != Vote::Kind::ListsThem;
}

/// The first report that keeps the line, in words, and how many more there are.
std::string KeeperOf(LineVotes const& line, Reports const& reports) {
  std::string keeper;
  std::size_t others = 0;
  for (std::size_t i = 0; i < line.votes.size(); ++i) {
    Report const& report = reports.each[i];
    if (!Keeps(line.votes[i], report)) {
      continue;
    }
    if (keeper.empty()) {
      keeper = std::format(" stays: {} {}", Printable(report.path.native()),
                           Phrase(line.votes[i], report, line.VotedOn()));
    } else {
      ++others;
    }
  }
  return others == 0 ? keeper : std::format("{} (and {} more)", keeper, others);
}

/// Why the lines that reports name may be others than those of the source; empty when they are not.
std::string WrongWith(fs::path const& source, SourceCondition condition) {
  switch (condition) {
    case SourceCondition::Missing:
    case SourceCondition::Unreadable:
      return WhyNotOpen(source).text;
    case SourceCondition::Changed:
      return NotAsAnalyzed(source);
    case SourceCondition::AsAnalyzed:
      break;
  }
  return {};
}

Listed ListStaying(Reports const& reports, fs::path const& path, fs::path const& root) {
  const SourceExcerpt source = ReadExcerpt(reports, path, root, {}, {});
  if (std::string wrong = WrongWith(root / path, source.condition); !wrong.empty()) {
    return {{}, {std::move(wrong)}};
  }
  Listed listed;
  for (LineVotes const& line : VotesOn(reports, path)) {
    const std::string keeper = line.goes ? "" : KeeperOf(line, reports);
    for (Marker const& marker : line.goes ? std::vector<Marker>() : line.markers) {
      listed.text += LineOf(Printable((root / path).native()), line.line, marker.offsets.begin + 1,
                            marker.code, "note: ", keeper);
    }
  }
  return listed;
}

void PrintAll(std::size_t count, std::function<Listed(std::size_t)> const& list,
              Options const& options, Console& console) {
  Complaints complaints(console, options.list);
  ParallelInOrder<Listed>(count, list, [&](std::size_t index, Listed const& listed) {
    for (std::string const& complaint : listed.complaints) {
      complaints.Add(complaint);
    }
    console.Out() << listed.text;
    console.Progress(index + 1, count);
    return console.IsHeard();
  });
  complaints.Finish();
}

}  // namespace

void List(Options const& options, Console& console) {
  const Filters filters = FiltersOf(options);
  if (options.stays) {
    Reports reports = ReadReports(options.reports, options.root);
    Narrow(reports, filters);
    const std::vector<fs::path> sources = NamedSources(reports);
    PrintAll(
        sources.size(),
        [&](std::size_t index) { return ListStaying(reports, sources[index], options.root); },
        options, console);
    return;
  }
  Files agreed = ReadAgreed(options.reports, options.root);
  Narrow(agreed, filters);
  std::vector<File const*> files;
  std::ranges::for_each(agreed.files, [&files](File const& file) { files.push_back(&file); });
  PrintAll(
      files.size(), [&](std::size_t index) { return ListGoing(*files[index], options.root); },
      options, console);
}

}  // namespace companion
