// What the page shows of one source.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tree/listed_source.h"
#include "tree/reports.h"
#include "tree/votes.h"

namespace tree {

struct PageSource {
  SourceCondition condition = SourceCondition::AsAnalyzed;
  std::vector<LineVotes> lines;
  /// For each marker of the lines, in order, where it stands in what is shown of its line, counted
  /// as ShownLength does; empty ranges for lines that are not shown.
  std::vector<Range> places;
  /// The listed lines and `around` lines before and behind each; nothing if it is not as analyzed.
  /// As JSON, FIRST,TEXT,... where each text is of lines that follow one another from line FIRST
  /// on.
  std::string hunks;
};

/// Reads the source `path` below `root`, unless no report lists a line of it. A source that is odd
/// makes it throw nothing. May be called from any thread; `reports` must outlive the result.
[[nodiscard]] PageSource ReadPageSource(Reports const& reports, std::filesystem::path const& path,
                                        std::filesystem::path const& root, std::uint32_t around);

}  // namespace tree
