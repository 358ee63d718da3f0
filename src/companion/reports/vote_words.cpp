#include "companion/reports/vote_words.h"

#include "merge/marker_text.h"

namespace companion {

std::string CodesOf(std::vector<Marker> const& markers) {
  std::string codes;
  for (Marker const& marker : markers) {
    codes += (codes.empty() ? "" : " ") + DiagnosticCode(marker.code);
  }
  return codes;
}

std::string Phrase(Vote const& vote, Report const& report, std::vector<Marker> const& markers) {
  switch (vote.kind) {
    case Vote::Kind::ListsThem:
      return "lists it";
    case Vote::Kind::ListsOthers: {
      const std::string codes = CodesOf(vote.line->markers);
      return codes == CodesOf(markers) ? "lists it in another place"
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

}  // namespace companion
