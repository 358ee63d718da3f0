// Blanks that only stood in front of a marker.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cleaner/planned_cut.h"
#include "merge/file.h"

namespace companion {

/// The lines of a record, with the ranges of markers that end their line grown over the blanks in
/// front of them. `source` is the text that was analyzed. At the end of a line compilers see no
/// blanks, also behind a backslash: what is safe to take out stays so.
[[nodiscard]] std::vector<Line> WithBlanks(std::vector<Line> lines, std::string_view source);

/// What goes of the source with the markers of the lines, which stand there.
[[nodiscard]] std::vector<ByteRange> RangesOf(std::vector<Line> const& lines,
                                              std::string_view source);

/// What is left of the source without the ranges.
[[nodiscard]] std::string Without(std::vector<ByteRange> const& ranges, std::string_view source);

}  // namespace companion
