#include "companion/page/line_votes_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <vector>

#include "companion/page/page_string.h"
#include "companion/reports/vote_words.h"

namespace companion {

namespace {

std::set<std::uint64_t> DifferentCodes(std::vector<Marker> const& markers) {
  std::set<std::uint64_t> codes;
  std::ranges::transform(markers, std::inserter(codes, codes.end()), &Marker::code);
  return codes;
}

/// The codes of markers; of very many only the first ones, as they are repeated for each line.
std::string FewCodes(std::vector<Marker> const& markers) {
  constexpr std::size_t most = 8;
  if (markers.size() <= most) {
    return CodesOf(markers);
  }
  return CodesOf({markers.begin(), markers.begin() + most}) + " and more";
}

char LetterOf(Vote const& vote, Report const& report, LineVotes const& line) {
  switch (vote.kind) {
    case Vote::Kind::ListsThem:
      return 'l';
    case Vote::Kind::ListsOthers:
      return DifferentCodes(vote.line->markers) == DifferentCodes(line.VotedOn()) ? 'p' : 'o';
    case Vote::Kind::DoesNotListTheLine:
      return 'n';
    case Vote::Kind::DoesNotNameTheFile:
      break;
  }
  return report.isRestricting ? 'r' : 'x';
}

}  // namespace

std::string LineVotesText(LineVotes const& line, Reports const& reports, Complaint const& unsafe) {
  std::string letters;
  std::string codes;
  for (std::size_t report = 0; report < line.votes.size(); ++report) {
    Vote const& vote = line.votes[report];
    letters += LetterOf(vote, reports.each[report], line);
    if (letters.back() == 'o') {
      codes += ",\"" + FewCodes(vote.line->markers) + '"';
    }
  }
  std::string json = "[";
  AppendPageString(json, !line.goes ? "s" : unsafe ? "u" + *unsafe : "g");
  return json.append(",\"").append(letters).append("\"").append(codes).append("]");
}

}  // namespace companion
