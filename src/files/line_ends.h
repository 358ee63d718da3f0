// Where a line of a source ends.
//
// LF, CR, CR LF and LF CR are one line end each, as the analyzer core counts them.
#pragma once

#include <cstddef>
#include <string_view>

/// What a line end consists of, for searches.
inline constexpr std::string_view LineEndBytes = "\r\n";

[[nodiscard]] constexpr bool IsLineEnd(char byte) {
  return byte == '\n' || byte == '\r';
}

/// The byte that, right behind `byte` of a line end, belongs to the same one.
[[nodiscard]] constexpr char LineEndPartner(char byte) {
  return byte == '\n' ? '\r' : '\n';
}

/// The length of the line end that `text` begins with, in bytes; 0 when it begins with none. The
/// text must not be cut between the two bytes of one.
[[nodiscard]] constexpr std::size_t LineEndLength(std::string_view text) {
  if (text.empty() || !IsLineEnd(text[0])) {
    return 0;
  }
  return text.size() > 1 && text[1] == LineEndPartner(text[0]) ? 2 : 1;
}
