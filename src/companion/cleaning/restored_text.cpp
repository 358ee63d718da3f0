#include "companion/cleaning/restored_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "files/line_ends.h"
#include "merge/hashing/sha1.h"
#include "merge/marker_text.h"

namespace companion {

namespace {

/// In front of a code; beyond that, what is longer than its code is no marker alone.
constexpr std::uint64_t MostZeros = 20;

/// In front of a marker at the end of its line; no more are put back there.
constexpr std::uint64_t MostBlanks = 1000;

class Restorer {
 public:
  Restorer(std::string_view cleaned, char blank) : m_rest(cleaned), m_blank(blank) {}

  /// Copies up to the beginning of a line; false when there is none.
  bool PassTo(std::uint32_t line) {
    while (m_number < line) {
      const std::size_t end = m_rest.find_first_of(LineEndBytes);
      if (end == std::string_view::npos) {
        return false;
      }
      Copy(end + LineEndLength(m_rest.substr(end)));
      ++m_number;
    }
    return m_number == line;
  }

  /// Puts the markers into the line that begins here.
  bool Insert(std::vector<Marker> const& markers) {
    std::uint64_t column = 0;
    for (auto const& [code, columns, offsets] : markers) {
      const std::string digits = code == 0 ? std::string() : std::to_string(code);
      const std::size_t least = MarkerBegin.size() + digits.size();
      const std::uint64_t length = offsets.end - offsets.begin;
      if (offsets.begin < column || offsets.begin - column > m_rest.size() + MostBlanks ||
          length < least || length > least + MostZeros) {
        return false;
      }
      CopyOrFill(static_cast<std::size_t>(offsets.begin - column));
      m_text += MarkerBegin;
      m_text.append(static_cast<std::size_t>(length) - least, '0').append(digits);
      column = offsets.end;
    }
    return true;
  }

  /// Whether they stand in the line that begins here.
  [[nodiscard]] bool HasAll(std::vector<Marker> const& markers) const {
    return std::ranges::all_of(markers, [this](Marker const& marker) {
      return marker.offsets.begin < m_rest.size() &&
             m_rest.substr(marker.offsets.begin).starts_with(MarkerBegin);
    });
  }

  [[nodiscard]] std::string Finish() {
    Copy(m_rest.size());
    return std::move(m_text);
  }

 private:
  /// Beyond the line's end stood blanks that were taken, too.
  void CopyOrFill(std::size_t count) {
    const std::size_t length = std::min(m_rest.find_first_of(LineEndBytes), m_rest.size());
    Copy(std::min(count, length));
    m_text.append(count - std::min(count, length), m_blank);
  }

  void Copy(std::size_t count) {
    m_text += m_rest.substr(0, count);
    m_rest.remove_prefix(count);
  }

  std::string_view m_rest;  ///< Of the cleaned text.
  char m_blank;
  std::string m_text;
  std::uint32_t m_number = 1;
};

std::optional<std::string> Restore(std::string_view cleaned, std::vector<Line> const& lines,
                                   char blank, bool isOnlyWhereGone) {
  Restorer restorer(cleaned, blank);
  const bool isDone = std::ranges::all_of(lines, [&](Line const& line) {
    return restorer.PassTo(line.line) &&
           ((isOnlyWhereGone && restorer.HasAll(line.markers)) || restorer.Insert(line.markers));
  });
  return isDone ? std::optional(restorer.Finish()) : std::nullopt;
}

}  // namespace

std::optional<RestoredText> Restored(std::string_view cleaned, File const& file) {
  for (const bool isOnlyWhereGone : {false, true}) {
    for (const char blank : {' ', '\t'}) {
      auto before = Restore(cleaned, file.lines, blank, isOnlyWhereGone);
      if (before && HashOf(*before) == file.hash) {
        return RestoredText{std::move(*before), !isOnlyWhereGone};
      }
    }
  }
  return std::nullopt;
}

}  // namespace companion
