// What leaving out a few bytes more does to the tokens of a source.
#pragma once

#include <cstdint>

#include "companion/safety/cpp_lexer.h"
#include "companion/safety/listed_lines.h"

namespace companion {

/// Why the markers of a line are not safe to take out.
enum class CutDanger : std::uint8_t {
  None,
  NoMarker,    ///< What the report points at is no marker, or not the one with this code.
  InString,    ///< Nor is what only looks like one.
  TextBehind,  ///< The comment's text behind the marker would become code.
  CodeBehind,  ///< Code behind the marker would become comment, or join with other code.
  NextLine,    ///< A line behind it would be read differently.
};

/// Holds a source, walked by `before`, against the same with the line's ranges left out, which
/// `after` does. Both must stand where the line or a token before it begins. The search ends some
/// KiB behind the line at the latest; where both did not meet by then, the line is not safe.
[[nodiscard]] CutDanger TryCut(ListedLine const& line, std::size_t sourceSize, CppLexer before,
                               CppLexer after);

}  // namespace companion
