// The look at what is cut.
//
// Input: a C++ source with markers in it, and behind it, read from the end, how each marker is
// listed: with a code or without, and how many bytes it has.
//
// What must hold: a line is said to be safe exactly when the slow way, which lexes the whole source
// anew for each line, finds the same tokens at the same places.

#include <cstdint>

#include "companion/safety/cut_safety.h"
#include "input_bytes.h"
#include "reference_tokens.h"
#include "require.h"

namespace {

/// A marker for whatever looks like one, mostly with the bytes and the code that it has.
std::vector<Line> ListMarkers(std::string_view source, InputBytes& choices) {
  std::vector<Line> lines;
  std::uint32_t number = 1;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i] == '\n' || source[i] == '\r') {
      const char partner = source[i] == '\n' ? '\r' : '\n';
      i += i + 1 < source.size() && source[i + 1] == partner ? 1 : 0;
      begin = i + 1;
      ++number;
    }
    const auto choice = choices.Take<std::uint8_t>();
    if (!source.substr(i).starts_with("//-V") || choice % 8 == 7) {
      continue;
    }
    if (lines.empty() || lines.back().line != number || choice == 8) {
      lines.push_back({.line = number, .markers = {}});
    }
    std::size_t length = 4;
    std::uint64_t code = 0;
    while (i + length < source.size() && source[i + length] >= '0' && source[i + length] <= '9') {
      code = code * 10 + static_cast<std::uint64_t>(source[i + length++] - '0');
    }
    length += choice % 4 == 3 ? choices.Take<std::uint8_t>() % 16 : 0;
    const std::uint64_t shift = choice == 16 ? 1 : 0;
    lines.back().markers.push_back({.code = choice % 3 == 0 ? 0 : code + (choice == 17 ? 1 : 0),
                                    .columns = {},
                                    .offsets = {i - begin + shift, i - begin + length}});
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  const std::size_t forChoices = size / 3;
  InputBytes choices(bytes + (size - forChoices), forChoices);
  const std::string source(reinterpret_cast<char const*>(bytes), size - forChoices);
  const std::vector<Line> lines = ListMarkers(source, choices);
  const std::vector<companion::UnsafeLine> unsafe = companion::UnsafeLines(lines, source);
  std::vector<bool> isSafe(lines.size(), true);
  for (companion::UnsafeLine const& line : unsafe) {
    Require(lines[line.index].line == line.line, "the number of the line");
    isSafe[line.index] = false;
  }
  Require(isSafe == ReferenceSafety(source, lines), "what is safe");
  return 0;
}
