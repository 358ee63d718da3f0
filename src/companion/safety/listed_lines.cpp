#include "companion/safety/listed_lines.h"

#include <algorithm>
#include <charconv>

#include "files/line_ends.h"
#include "merge/marker_text.h"

namespace companion {

namespace {

/// Walks over the lines of a text.
class LineFinder {
 public:
  explicit LineFinder(std::string_view text)
      : m_text(text), m_lineFeed(Find('\n')), m_carriageReturn(Find('\r')) {}

  /// Goes on to a line that is not before the one it is at; false when the text has none.
  [[nodiscard]] bool GoTo(std::uint32_t number) {
    for (; m_number < number; ++m_number) {
      const std::size_t end = End();
      const std::size_t length = LineEndLength(m_text.substr(end));
      if (length == 0) {
        return false;
      }
      m_begin = end + length;
      m_lengthOfEndBefore = length;
    }
    return true;
  }

  [[nodiscard]] std::size_t Begin() const { return m_begin; }

  /// Whether the line ends before and behind the line are one if nothing stands between them.
  [[nodiscard]] bool WouldJoinEnds() {
    return m_lengthOfEndBefore == 1 && LineEndLength(m_text.substr(End())) != 0 &&
           m_text[End()] == LineEndPartner(m_text[m_begin - 1]);
  }

  [[nodiscard]] std::size_t End() {
    // What is found is kept: one of the two may not come for long.
    m_lineFeed = m_lineFeed < m_begin ? Find('\n') : m_lineFeed;
    m_carriageReturn = m_carriageReturn < m_begin ? Find('\r') : m_carriageReturn;
    return std::min(m_lineFeed, m_carriageReturn);
  }

 private:
  [[nodiscard]] std::size_t Find(char byte) const {
    return std::min(m_text.find(byte, m_begin), m_text.size());
  }

  std::string_view m_text;
  std::size_t m_begin = 0;
  std::size_t m_lengthOfEndBefore = 0;
  std::uint32_t m_number = 1;
  std::size_t m_lineFeed;
  std::size_t m_carriageReturn;
};

bool IsDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// Whether the marker that begins at `begin` has the code, and all of its digits end before `end`.
bool HoldsMarker(std::string_view line, std::uint64_t code, std::size_t begin, std::size_t end) {
  const std::string_view marker = line.substr(begin);
  if (!marker.starts_with(MarkerBegin)) {
    return false;
  }
  char const* const first = marker.data() + MarkerBegin.size();
  char const* const last = std::find_if_not(first, marker.data() + marker.size(), IsDigit);
  std::uint64_t number = 0;
  const auto [read, error] = std::from_chars(first, last, number);
  return last <= line.data() + end && (code == 0 || (error == std::errc{} && number == code));
}

std::vector<ByteRange> DroppedOf(Line const& listed, std::string_view source, std::size_t begin,
                                 std::size_t end) {
  const std::string_view line = source.substr(begin, end - begin);
  std::vector<ByteRange> dropped;
  std::uint64_t behind = 0;
  for (auto const& [code, columns, offsets] : listed.markers) {
    if (offsets.begin < behind || offsets.begin >= offsets.end || offsets.end > line.size() ||
        !HoldsMarker(line, code, offsets.begin, offsets.end)) {
      return {};
    }
    dropped.push_back({begin + offsets.begin, begin + offsets.end});
    behind = offsets.end;
  }
  return dropped;
}

/// Whether nothing of the line stays.
bool IsAllOf(ListedLine const& line) {
  std::size_t at = line.begin;
  for (auto const& [begin, end] : line.dropped) {
    at = begin == at ? end : at;
  }
  return at == line.end;
}

}  // namespace

std::vector<ListedLine> FindListedLines(std::vector<Line> const& lines, std::string_view source) {
  LineFinder finder(source);
  std::vector<ListedLine> found;
  std::uint64_t least = 1;  // The number that the next line has at least.
  for (Line const& line : lines) {
    ListedLine& listed = found.emplace_back(line.line);
    if (line.line < least || !finder.GoTo(line.line)) {
      continue;
    }
    least = line.line + (line.markers.empty() ? 0ULL : 1ULL);
    listed.begin = finder.Begin();
    listed.end = finder.End();
    listed.dropped = DroppedOf(line, source, listed.begin, listed.end);
    listed.holdsMarkers = listed.dropped.size() == line.markers.size();
    listed.joinsLineEnds = !listed.dropped.empty() && IsAllOf(listed) && finder.WouldJoinEnds();
  }
  return found;
}

}  // namespace companion
