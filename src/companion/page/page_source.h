// What the page shows of one source.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "companion/output/complaint.h"
#include "companion/reports/reports.h"
#include "companion/reports/votes.h"
#include "companion/sources/source_excerpt.h"

namespace companion {

struct PageSource {
  SourceCondition condition = SourceCondition::AsAnalyzed;
  std::vector<LineVotes> lines;
  /// For each of the lines why it is not safe to take its markers out, if it goes and is not.
  std::vector<Complaint> unsafe;
  /// For each marker of the lines, in order, where it stands in what is shown of its line, as
  /// ShowLine tells; empty ranges for lines that are not shown.
  std::vector<Range> places;
  /// The listed lines and those around each; nothing if it is not as analyzed.
  /// As JSON, FIRST,TEXT,... where each text is of lines that follow one another from line FIRST
  /// on.
  std::string hunks;
};

/// Reads the source `path` below `root`, unless no report lists a line of it. Throws
/// nothing but std::bad_alloc. May be called from any thread; `reports` must outlive the result.
[[nodiscard]] PageSource ReadPageSource(Reports const& reports, std::filesystem::path const& path,
                                        std::filesystem::path const& root,
                                        LinePicker::Around around);

}  // namespace companion
