// Reports agree on whole lines: merging keeps a line where all that name its file list it with the
// same markers in the same order, and drops it otherwise, with every marker on it. So mostly a line
// has one LineVotes, and all its markers go or all stay:
//
//   report   line 3        line 5
//   a.json   V501          V501 V502
//   b.json   V501          V501
//            V501 goes     V501 V502 stay; b.json lists others
//
// What goes is what reports.agreed has on the line. What stays is everything else that any report
// lists there: each marker once, be it listed by one report or by all, in the order of the line.
//
// There are several LineVotes of one line where it is listed with different markers and yet some of
// them go. This takes a report that lists the line twice; or a structured report that does not name
// the file, and so takes out all that those before it say of the file, and behind it a raw report
// that names the file anew:
//
//   a.json   V501 V502
//   b.json   (structured, does not name the file)
//   c.json   V502
//            V502 goes: listed by c.json, while a.json lists others
//            V501 stays: listed so by nobody
//
// A marker that goes with any of the agreed lines does not stay as well, as V502 does not here.
//
// The lines of all reports are put in one row by their numbers, those of one number in the order of
// the reports. Walking along it, each number takes the agreed lines that it has, one LineVotes for
// each; what is then left of its markers makes the last one, which stays. A line that is listed
// with no markers at all has a LineVotes without markers, so that it is not taken for an unlisted
// one.

#include "companion/reports/votes.h"

#include <algorithm>
#include <span>

namespace companion {

namespace {

/// A line as one report lists it.
struct ListedLine {
  std::uint32_t number;
  std::size_t report;
  Line const* line;
};

std::vector<ListedLine> ListedLines(std::vector<File const*> const& files) {
  std::vector<ListedLine> listed;
  for (std::size_t report = 0; report < files.size(); ++report) {
    if (files[report] != nullptr) {
      for (Line const& line : files[report]->lines) {
        listed.push_back({line.line, report, &line});
      }
    }
  }
  std::ranges::stable_sort(listed, {}, &ListedLine::number);
  return listed;
}

std::vector<Marker> AllMarkers(std::span<ListedLine const> listed) {
  std::vector<Marker> markers;
  for (ListedLine const& one : listed) {
    markers.insert(markers.end(), one.line->markers.begin(), one.line->markers.end());
  }
  std::ranges::sort(markers, {}, InOrderOfLine);
  const auto [repeated, end] = std::ranges::unique(markers);
  markers.erase(repeated, end);
  return markers;
}

Vote VoteOf(std::size_t report, File const* file, std::span<ListedLine const> listed,
            std::vector<Marker> const& markers) {
  if (file == nullptr) {
    return {};
  }
  Vote vote{Vote::Kind::DoesNotListTheLine, nullptr};
  for (ListedLine const& one : listed) {
    if (one.report != report) {
      continue;
    }
    if (one.line->markers == markers) {
      return {Vote::Kind::ListsThem, one.line};
    }
    if (vote.line == nullptr) {
      vote = {Vote::Kind::ListsOthers, one.line};
    }
  }
  return vote;
}

LineVotes Collect(bool goes, std::vector<Marker> markers, std::span<ListedLine const> listed,
                  std::vector<File const*> const& files) {
  LineVotes votes{listed.front().number, goes, std::move(markers), {}};
  for (std::size_t report = 0; report < files.size(); ++report) {
    votes.votes.push_back(VoteOf(report, files[report], listed, votes.markers));
  }
  return votes;
}

bool IsBefore(Line const& one, Line const& other) {
  return one.line != other.line ? one.line < other.line
                                : std::ranges::lexicographical_compare(
                                      one.markers, other.markers, {}, InOrderOfLine, InOrderOfLine);
}

/// The different lines among those that go.
std::vector<Line> GoingLines(File const* agreed) {
  std::vector<Line> goes;
  if (agreed != nullptr) {
    goes = agreed->lines;
    std::ranges::sort(goes, IsBefore);
    const auto [repeated, end] = std::ranges::unique(goes);
    goes.erase(repeated, end);
  }
  return goes;
}

/// `staying` is in the order of the line.
void TakeOut(std::vector<Marker>& staying, std::vector<Marker> going) {
  std::ranges::sort(going, {}, InOrderOfLine);
  std::erase_if(staying, [&going](Marker const& marker) {
    return std::ranges::binary_search(going, InOrderOfLine(marker), {}, InOrderOfLine);
  });
}

/// The votes stay, which are on whole lines.
void TakeOutOtherCodes(std::vector<LineVotes>& all, CodeFilter const& codes) {
  std::erase_if(all, [&codes](LineVotes& line) {
    line.uncut = line.markers;
    std::erase_if(line.markers, [&codes](Marker const& one) { return !codes.Takes(one.code); });
    return line.markers.empty();
  });
}

}  // namespace

std::vector<LineVotes> VotesOn(Reports const& reports, std::filesystem::path const& path) {
  std::vector<File const*> files;
  files.reserve(reports.each.size());
  for (Report const& report : reports.each) {
    files.push_back(FindFile(report.files, path));
  }
  const std::vector<ListedLine> listed = ListedLines(files);
  const std::vector<Line> goes = GoingLines(FindFile(reports.AllAgreed(), path));
  std::vector<LineVotes> all;
  auto going = goes.begin();
  for (auto begin = listed.begin(); begin != listed.end();) {
    const auto end = std::find_if(
        begin, listed.end(), [&](ListedLine const& one) { return one.number != begin->number; });
    const std::span onLine(begin, end);
    std::vector<Marker> staying = AllMarkers(onLine);
    for (; going != goes.end() && going->line == begin->number; ++going) {
      TakeOut(staying, going->markers);
      all.push_back(Collect(true, going->markers, onLine, files));
    }
    if (!staying.empty() || all.empty() || all.back().line != begin->number) {
      all.push_back(Collect(false, std::move(staying), onLine, files));
    }
    begin = end;
  }
  if (!reports.codes.TakesAll()) {
    TakeOutOtherCodes(all, reports.codes);
  }
  return all;
}

}  // namespace companion
