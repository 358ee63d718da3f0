#include "tree/votes.h"

#include <algorithm>
#include <compare>
#include <format>
#include <iterator>
#include <span>
#include <string_view>
#include <tuple>

namespace tree {

namespace {

/// A line as one report lists it.
struct Listed {
  std::uint32_t number;
  std::size_t report;
  Line const* line;
};

auto InOrderOfLine(Marker const& marker) {
  return std::tuple(marker.offsets.begin, marker.offsets.end, marker.columns.begin,
                    marker.columns.end, marker.code);
}

std::vector<Listed> ListedLines(std::vector<File const*> const& files) {
  std::vector<Listed> listed;
  for (std::size_t report = 0; report < files.size(); ++report) {
    if (files[report] != nullptr) {
      for (Line const& line : files[report]->lines) {
        listed.push_back({line.line, report, &line});
      }
    }
  }
  std::ranges::stable_sort(listed, {}, &Listed::number);
  return listed;
}

std::vector<Marker> AllMarkers(std::span<Listed const> listed) {
  std::vector<Marker> markers;
  for (Listed const& one : listed) {
    markers.insert(markers.end(), one.line->markers.begin(), one.line->markers.end());
  }
  std::ranges::sort(markers, {}, InOrderOfLine);
  const auto [repeated, end] = std::ranges::unique(markers);
  markers.erase(repeated, end);
  return markers;
}

Vote VoteOf(std::size_t report, File const* file, std::span<Listed const> listed,
            std::vector<Marker> const& markers) {
  if (file == nullptr) {
    return {};
  }
  Vote vote{Vote::Kind::DoesNotListTheLine, nullptr};
  for (Listed const& one : listed) {
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

LineVotes Collect(bool goes, std::vector<Marker> markers, std::span<Listed const> listed,
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
std::vector<Line> WhatGoes(File const* agreed) {
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

}  // namespace

std::vector<LineVotes> VotesOn(Reports const& reports, std::filesystem::path const& path) {
  std::vector<File const*> files;
  files.reserve(reports.each.size());
  for (Report const& report : reports.each) {
    files.push_back(FindFile(report.files, path));
  }
  const std::vector<Listed> listed = ListedLines(files);
  const std::vector<Line> goes = WhatGoes(FindFile(reports.agreed, path));
  std::vector<LineVotes> all;
  auto going = goes.begin();
  for (auto begin = listed.begin(); begin != listed.end();) {
    const auto end = std::find_if(begin, listed.end(),
                                  [&](Listed const& one) { return one.number != begin->number; });
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
  return all;
}

std::string CodesOf(std::vector<Marker> const& markers) {
  std::string codes;
  for (Marker const& marker : markers) {
    codes +=
        std::format("{}V{:03}", codes.empty() ? "" : " ", static_cast<std::uint32_t>(marker.code));
  }
  return codes;
}

std::string Phrase(Vote const& vote, Report const& report, std::vector<Marker> const& markers) {
  switch (vote.kind) {
    case Vote::Kind::ListsThem:
      return "lists it";
    case Vote::Kind::ListsOthers: {
      const std::string codes = CodesOf(vote.line->markers);
      return codes == CodesOf(markers) ? "lists it at another place"
                                       : "lists other markers there: " + codes;
    }
    case Vote::Kind::DoesNotListTheLine:
      return "does not list the line";
    case Vote::Kind::DoesNotNameTheFile:
      break;
  }
  return report.isRestricting ? "does not name the file, and takes out all that it does not name"
                              : "does not name the file";
}

}  // namespace tree
