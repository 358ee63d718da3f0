// The listed lines of a source, and what a cleanup would take out of each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "cleaner/planned_cut.h"
#include "merge/file.h"

namespace companion {

/// A listed line as it stands in the source.
struct ListedLine {
  std::uint32_t number = 0;        ///< 1-based.
  std::size_t begin = 0;           ///< Of its first byte in the source.
  std::size_t end = 0;             ///< Of its line end, or of the source.
  std::vector<ByteRange> dropped;  ///< Ascending; all of the line, or none.
  bool holdsMarkers = false;       ///< Whether all ranges hold what the report says.
  bool joinsLineEnds = false;      ///< Whether, without them, LF and CR beside it would be one end.
};

/// Finds the lines that have markers, in their order, and holds each range against what stands
/// there: it lies within its line, behind the one before, begins with //-V and, unless its code is
/// 0, holds that number next. A line that does not come behind the one before it is not found by a
/// cleanup, so no marker stands there.
[[nodiscard]] std::vector<ListedLine> FindListedLines(std::vector<Line> const& lines,
                                                      std::string_view source);

}  // namespace companion
