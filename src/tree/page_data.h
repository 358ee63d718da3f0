// The data of the page.
#pragma once

#include "tree/console.h"
#include "tree/options.h"
#include "tree/output_file.h"
#include "tree/reports.h"

namespace tree {

/// Writes, for src/tree/page/data.js to read, what the reports say, and the lines of the sources
/// that they say it of:
///
///   {"root": NAME, "made": TIME, "version": VERSION,
///    "reports": [[PATH, files named, markers listed], ...],
///    "files": [[PATH, STATE, [LINE, COUNT, (BEGIN, END, CODE, VOTES) ..., ...],
///               [FIRST, TEXT, ...]], ...],
///    "codes": [...], "votes": [...]}
///
/// STATE is a SourceState. COUNT is that of the markers on the line; CODE and VOTES are numbers of
/// entries in the last two, which marker_votes.h describes. A TEXT is of lines that follow one
/// another from line FIRST on. Written piece by piece: memory is needed for the reports, and for
/// the listed lines of some sources.
void WritePageData(OutputFile& file, Reports const& reports, Options const& options,
                   Console& console);

}  // namespace tree
