// What the reports say of one line, as the page has it.
#pragma once

#include <string>

#include "companion/output/complaint.h"
#include "companion/reports/reports.h"
#include "companion/reports/votes.h"

namespace companion {

/// A JSON array such as ["s","lon","V502"]. First comes "g" for a line that goes, "s" for one that
/// stays, or "u" with the reason for one that goes but is not safe to take out, which `unsafe`
/// tells; then a letter for each report:
///   l  lists the markers
///   o  lists only some of them; which ones follows the letters, in an entry for each such report
///   p  lists their codes, but at another place
///   n  does not list the line
///   x  does not name the file
///   r  does not name the file, and so takes it out of the cleanup
[[nodiscard]] std::string LineVotesText(LineVotes const& line, Reports const& reports,
                                        Complaint const& unsafe);

}  // namespace companion
