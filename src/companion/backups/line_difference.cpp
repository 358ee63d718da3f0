// How a cleaned line is recognised.
//
// The line before is known, and so is the cleaned one; not known is what was taken out between
// them. A report may list a marker alone, or with the remark behind it, and any choice of the
// markers of a line:
//
//   before:   f(x);  //-V501 //-V547 checked above      g  //-V502
//   cleaned:  f(x);   //-V547 checked above             one marker
//             f(x);  //-V501                            the other one, with its remark
//             f(x);                                     both
//
// So the cleaned line must be what is left of the line before when some pieces are taken out of it,
// each of which begins where a marker begins, holds that marker's digits, and ends anywhere behind
// them. Where a piece ends is the one thing to be found out.
//
// Read from the front, the two lines are equal up to some byte. The first piece begins at a marker
// at that byte or in front of it; which one is tried, the last one first. From there on,
// PieceSearch reads the cleaned line byte by byte and holds the set of all places in the line
// before at which its next byte may stand:
//
//   - a place moves on by one when the byte there is the next one of the cleaned line, else it
//   goes;
//   - a place at which a marker begins may also be the beginning of a piece, and then the next byte
//     may stand anywhere from the end of that marker's digits on.
//
// The line is whole if at its end a place has reached the end of the line before, or a piece could.
// A piece at the end of the line may also have taken all blanks in front of it: then the line
// before is one that ends where these blanks begin.
//
// Nearly always the pieces are the markers alone. That is tried first, in a single walk.
#include "companion/backups/line_difference.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "companion/safety/blanks.h"
#include "merge/marker_text.h"

namespace companion {

namespace {

constexpr std::size_t None = std::string_view::npos;

/// How many places are looked at before the search is given up; some tenths of a second.
constexpr std::size_t MostWork = std::size_t{1} << 28U;

/// At how many of a line's last markers blanks are thought of.
constexpr int MostTries = 64;

/// Where the digits of the marker that begins at `marker` end.
std::size_t EndOfDigits(std::string_view line, std::size_t marker) {
  return std::min(line.find_first_not_of("0123456789", marker + MarkerBegin.size()), line.size());
}

/// Whether markers alone, without anything behind their digits, were taken out. A marker that both
/// lines have is taken as kept: where one of two equal markers side by side is gone, it does not
/// matter which.
bool IsLessWholeMarkers(std::string_view cleaned, std::string_view before) {
  while (!before.empty()) {
    const bool atMarker = before.starts_with(MarkerBegin);
    const std::size_t length =
        atMarker ? EndOfDigits(before, 0) : std::min(before.find(MarkerBegin, 1), before.size());
    const std::string_view piece = before.substr(0, length);
    const bool isKept =
        cleaned.starts_with(piece) && (!atMarker || EndOfDigits(cleaned, 0) == length);
    if (!isKept && !atMarker) {
      return false;
    }
    cleaned.remove_prefix(isKept ? length : 0);
    before.remove_prefix(length);
  }
  return cleaned.empty();
}

class PieceSearch {
 public:
  /// Begins with a piece taken out of `before` at `marker`.
  PieceSearch(std::string_view before, std::size_t marker)
      : m_before(before), m_resume(EndOfDigits(before, marker)) {}

  /// Adds to `work` how many places it looks at.
  LineDifference Run(std::string_view cleaned, std::size_t& work) {
    for (const char byte : cleaned) {
      work += Take(byte);
      if ((m_places.empty() && m_resume == None) || work > MostWork) {
        return {};
      }
    }
    return {m_resume != None || (!m_places.empty() && m_places.back() == m_before.size()), true};
  }

 private:
  std::size_t Take(char byte) {
    std::size_t work = m_places.size() + 1;
    std::vector<std::size_t> next;
    for (const std::size_t place : m_places) {
      if (place < std::min(m_resume, m_before.size()) && m_before[place] == byte) {
        next.push_back(place + 1);
      }
    }
    if (m_resume != None) {
      work += m_before.size() - m_resume;
      for (std::size_t at = m_resume; (at = m_before.find(byte, at)) != None; ++at) {
        next.push_back(at + 1);
      }
    }
    m_places = std::move(next);
    m_resume = None;
    for (const std::size_t place : m_places) {
      if (m_before.substr(place).starts_with(MarkerBegin)) {
        m_resume = EndOfDigits(m_before, place);
        break;
      }
    }
    return work;
  }

  std::string_view m_before;
  std::vector<std::size_t> m_places;  ///< Where the next byte may stand, ascending.
  std::size_t m_resume;  ///< And anywhere from here on, if a piece was begun; else None.
};

/// With all blanks in their places.
LineDifference CompareKeepingBlanks(std::string_view cleaned, std::string_view before) {
  if (IsLessWholeMarkers(cleaned, before)) {
    return {true, true};
  }
  const auto common =
      static_cast<std::size_t>(std::ranges::mismatch(cleaned, before).in1 - cleaned.begin());
  LineDifference difference{false, common == cleaned.size()};
  std::size_t work = 0;
  std::size_t marker = common;
  while (!difference.isWhole && work <= MostWork &&
         (marker = before.rfind(MarkerBegin, marker)) != None) {
    const LineDifference found = PieceSearch(before, marker).Run(cleaned.substr(marker), work);
    difference.isWhole |= found.isWhole;
    difference.isBeginning |= found.isBeginning;
    if (marker-- == 0) {
      break;
    }
  }
  return difference;
}

}  // namespace

LineDifference CompareLines(std::string_view cleaned, std::string_view before) {
  LineDifference difference = CompareKeepingBlanks(cleaned, before);
  std::size_t marker = before.size();
  for (int tries = 0; !difference.isWhole && tries < MostTries && marker > 0; ++tries) {
    marker = before.rfind(MarkerBegin, marker - 1);
    if (marker == None) {
      break;
    }
    // What stands in front of a piece at the end of the line, without the blanks.
    const std::size_t end =
        before.find_last_not_of(Blanks, marker - std::min<std::size_t>(marker, 1));
    const std::string_view front = before.substr(0, end == None ? 0 : end + 1);
    difference.isWhole = front.size() < marker && cleaned.size() <= front.size() &&
                         CompareKeepingBlanks(cleaned, front).isWhole;
  }
  return difference;
}

}  // namespace companion
