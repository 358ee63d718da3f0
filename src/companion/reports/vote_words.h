// Votes in words.
#pragma once

#include <string>
#include <vector>

#include "companion/reports/reports.h"
#include "companion/reports/votes.h"

namespace companion {

/// The codes of the markers as they are written in the warnings report: "V501 V502".
[[nodiscard]] std::string CodesOf(std::vector<Marker> const& markers);

/// A report's vote as a phrase behind the report's name: "lists other markers there: V502".
/// `markers` are those that the LineVotes are on.
[[nodiscard]] std::string Phrase(Vote const& vote, Report const& report,
                                 std::vector<Marker> const& markers);

}  // namespace companion
