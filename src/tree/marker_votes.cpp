#include "tree/marker_votes.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <tuple>

namespace tree {

namespace {

auto Key(Marker const& marker) {
  return std::tuple(marker.offsets.begin, marker.offsets.end, marker.columns.begin,
                    marker.columns.end, marker.code);
}

/// The codes on the line without that of the marker itself. Of very many only the first ones: they
/// are repeated for each.
std::string OtherCodes(std::vector<Marker> const& markers, Marker const& marker) {
  constexpr std::size_t most = 8;
  std::vector<Marker> others;
  for (auto one = markers.begin(); one != markers.end() && others.size() <= most; ++one) {
    if (*one != marker) {
      others.push_back(*one);
    }
  }
  if (others.size() <= most) {
    return CodesOf(others);
  }
  others.pop_back();
  return CodesOf(others) + " and more";
}

}  // namespace

MarkerVotes::MarkerVotes(LineVotes const& votes, Reports const& reports)
    : m_votes(votes),
      m_reports(reports),
      m_isDisputed(std::ranges::any_of(
          votes.votes, [](Vote const& vote) { return vote.kind == Vote::Kind::ListsOthers; })) {
  if (!m_isDisputed) {
    return;
  }
  for (Vote const& vote : votes.votes) {
    Listed& listed = m_listed.emplace_back();
    if (vote.line != nullptr) {
      listed.markers = vote.line->markers;
      std::ranges::sort(listed.markers, {}, Key);
      std::ranges::transform(listed.markers, std::back_inserter(listed.codes), &Marker::code);
      std::ranges::sort(listed.codes);
    }
  }
}

std::string MarkerVotes::Of(Marker const& marker) const {
  std::string json = m_votes.goes ? R"(["g")" : R"(["s")";
  for (std::size_t report = 0; report < m_votes.votes.size(); ++report) {
    json.append(",\"").append(Said(report, marker)).append("\"");
  }
  return json += "]";
}

std::string MarkerVotes::Said(std::size_t report, Marker const& marker) const {
  switch (m_votes.votes[report].kind) {
    case Vote::Kind::ListsThem:
    case Vote::Kind::ListsOthers:
      return m_isDisputed ? OfListed(report, marker) : "l";
    case Vote::Kind::DoesNotListTheLine:
      return "n";
    case Vote::Kind::DoesNotNameTheFile:
      break;
  }
  return m_reports.each[report].isRestricting ? "r" : "x";
}

std::string MarkerVotes::OfListed(std::size_t report, Marker const& marker) const {
  auto const& [markers, codes] = m_listed[report];
  const std::string others = OtherCodes(m_votes.votes[report].line->markers, marker);
  if (std::ranges::binary_search(markers, Key(marker), {}, Key)) {
    return "m" + others;
  }
  return std::ranges::binary_search(codes, marker.code) ? "p" : "o" + others;
}

}  // namespace tree
