#include "companion/cleaning/with_blanks.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "companion/safety/blanks.h"
#include "companion/safety/listed_lines.h"
#include "files/line_ends.h"

namespace companion {

namespace {

/// `begin` is where the line begins in the source, `end` where it ends.
void Grow(Line& line, std::string_view source, std::uint64_t begin, std::uint64_t end) {
  for (auto marker = line.markers.rbegin(); marker != line.markers.rend(); ++marker) {
    if (begin + marker->offsets.end != end) {
      return;
    }
    std::uint64_t const least = marker + 1 == line.markers.rend() ? 0 : (marker + 1)->offsets.end;
    while (marker->offsets.begin > least && IsBlank(source[begin + marker->offsets.begin - 1])) {
      --marker->offsets.begin;
    }
    end = begin + marker->offsets.begin;
  }
}

std::size_t CountLineEnds(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find_first_of(LineEndBytes, at)) != std::string_view::npos;) {
    at += LineEndLength(text.substr(at));
    ++count;
  }
  return count;
}

}  // namespace

std::vector<Line> WithBlanks(std::vector<Line> lines, std::string_view source) {
  const std::vector<ListedLine> listed = FindListedLines(lines, source);
  if (!std::ranges::all_of(listed, &ListedLine::holdsMarkers)) {
    return lines;
  }
  std::vector<Line> grown = lines;
  for (std::size_t i = 0; i < grown.size(); ++i) {
    Grow(grown[i], source, listed[i].begin, listed[i].end);
  }
  // Where LF and CR stand on both sides of a line, they would be one end if nothing is left of it.
  return CountLineEnds(Without(RangesOf(grown, source), source)) == CountLineEnds(source) ? grown
                                                                                          : lines;
}

std::vector<ByteRange> RangesOf(std::vector<Line> const& lines, std::string_view source) {
  const std::vector<ListedLine> listed = FindListedLines(lines, source);
  std::vector<ByteRange> ranges;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (Marker const& marker : lines[i].markers) {
      ranges.push_back(
          {listed[i].begin + marker.offsets.begin, listed[i].begin + marker.offsets.end});
    }
  }
  return ranges;
}

std::string Without(std::vector<ByteRange> const& ranges, std::string_view source) {
  std::string left;
  std::size_t at = 0;
  for (auto const& [begin, end] : ranges) {
    left += source.substr(at, begin - at);
    at = end;
  }
  return left.append(source.substr(at));
}

}  // namespace companion
