#include "companion/page/shown_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <format>
#include <iterator>

#include "companion/page/page_string.h"

namespace companion {

namespace {

constexpr std::uint64_t MostWhole = 2000;  // In bytes; and so many are shown of a longer line.
constexpr std::uint64_t MostPlain = 400;   // Of a line without markers.
constexpr std::uint64_t Around = 200;      // Before and behind a marker.

/// Where the character that holds the byte begins.
std::uint64_t CharacterAt(std::string_view line, std::uint64_t at) {
  const auto isInside = [line](std::uint64_t byte) {
    return byte < line.size() && (static_cast<unsigned char>(line[byte]) & 0xC0U) == 0x80;
  };
  for (int back = 0; back < 3 && at > 0 && isInside(at); ++back) {
    --at;
  }
  return at;
}

/// What is shown of a long line: ranges in order, that do not touch, of not too many bytes in all.
std::vector<Range> ShownRanges(std::string_view line, std::span<Marker const> markers) {
  std::vector<Range> wanted;
  for (Marker const& marker : markers) {
    const std::uint64_t begin = std::min<std::uint64_t>(marker.offsets.begin, line.size());
    const std::uint64_t end = std::clamp<std::uint64_t>(marker.offsets.end, begin, line.size());
    wanted.push_back({begin - std::min(begin, Around), std::min(end + Around, line.size())});
  }
  if (wanted.empty()) {
    wanted.push_back({0, Around});
  }
  std::ranges::sort(wanted);
  std::vector<Range> shown;
  std::uint64_t left = MostWhole;
  for (Range range : wanted) {
    const bool isJoined = !shown.empty() && range.begin <= shown.back().end;
    range.begin = isJoined ? shown.back().end : range.begin;
    range.end = std::min(std::max(range.end, range.begin), range.begin + left);
    left -= range.end - range.begin;
    range = {CharacterAt(line, range.begin), CharacterAt(line, range.end)};
    if (isJoined) {
      shown.back().end = std::max(shown.back().end, range.end);
    } else if (range.begin < range.end) {
      shown.push_back(range);
    }
  }
  return shown;
}

/// Puts together what is shown, and knows where a byte of the line is in it.
class Cut {
 public:
  Cut(std::string_view line, std::vector<Range> const& ranges) {
    for (Range const& range : ranges) {
      LeaveOut(range.begin);
      m_pieces.push_back({range, m_text.size()});
      m_text += line.substr(range.begin, range.end - range.begin);
      m_end = range.end;
    }
    LeaveOut(line.size());
  }

  [[nodiscard]] std::string const& Text() const { return m_text; }

  /// The place of the part of the range that is shown; an empty one when none is.
  [[nodiscard]] Range PlaceOf(Range const& range) const {
    for (auto const& [part, at] : m_pieces) {
      const std::uint64_t begin = std::max(range.begin, part.begin);
      const std::uint64_t end = std::min(range.end, part.end);
      if (begin < end) {
        return {ShownAt(at + begin - part.begin), ShownAt(at + end - part.begin)};
      }
    }
    return {};
  }

 private:
  struct Piece {
    Range range;           ///< In the line.
    std::uint64_t at = 0;  ///< Where it begins in the text, in bytes.
  };

  void LeaveOut(std::uint64_t end) {
    if (end > m_end) {
      std::format_to(std::back_inserter(m_text), "[\xe2\x80\xa6 {} bytes left out \xe2\x80\xa6]",
                     end - m_end);
    }
  }

  [[nodiscard]] std::uint64_t ShownAt(std::uint64_t at) const {
    return ShownLength(std::string_view(m_text).substr(0, at));
  }

  std::vector<Piece> m_pieces;
  std::string m_text;
  std::uint64_t m_end = 0;  ///< Of what is in the text, of the line.
};

}  // namespace

ShownLine ShowLine(std::string_view line, std::span<Marker const> markers) {
  const bool isWhole = line.size() <= (markers.empty() ? MostPlain : MostWhole);
  const Cut cut(line, isWhole ? std::vector<Range>{{0, line.size()}} : ShownRanges(line, markers));
  ShownLine shown{cut.Text(), {}};
  std::ranges::transform(markers, std::back_inserter(shown.places),
                         [&cut](Marker const& marker) { return cut.PlaceOf(marker.offsets); });
  return shown;
}

}  // namespace companion
