// The data of the page.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "companion/output/console.h"
#include "companion/output/result_file.h"
#include "companion/reports/reports.h"

namespace companion {

/// What the page tells of how it was made. The filters are those that its reports went through, as
/// typed; a command for what is on the page needs them, too.
struct PageOrigin {
  std::filesystem::path root;
  std::vector<std::string> warnings;  ///< Of the reports, why its numbers cannot be trusted.
  std::vector<std::string> codes;
  std::vector<std::string> paths;
  std::vector<std::string> without;
  std::vector<std::string> withoutCodes{};
};

/// Writes, for web/data.js to read, what the reports say, and the lines of the sources
/// that they say it of:
///
///   {"root": NAME, "typed": as a command has it where the reports are, "made": TIME, "version":
///   VERSION,
///    "reports": [[PATH, files named, markers listed], ...],
///    "warnings": [TEXT, ...], "equal": [[report, the one before it that says the same], ...],
///    "filters": [[CODE, ...], [CODE without, ...], [GLOB of paths, ...], [GLOB without, ...]],
///    "around": how many lines are shown [before, behind] each listed one, if the source has them,
///    "files": [[PATH, STATE, [LINE, COUNT, VOTES, (BEGIN, END, CODE) ..., ...],
///               [FIRST, TEXT, ...]], ...],
///    "codes": [...], "votes": [...]}
///
/// STATE is a SourceCondition, or for a source as analyzed that cannot be cleaned none the less the
/// words for what is in the way. COUNT is that of the markers on the line; CODE and VOTES are
/// numbers of entries in the last two, which line_votes_text.h describes. A TEXT of a file is of
/// lines that follow one another from line FIRST on. Written piece by piece: memory is needed for
/// the reports, and for the listed lines of some sources.
void WritePageData(ResultFile& file, Reports const& reports, PageOrigin const& origin,
                   Console& console);

}  // namespace companion
