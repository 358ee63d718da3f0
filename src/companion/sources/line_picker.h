// Picking listed lines, and some around each, out of a source as it is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// Is given a source piece by piece, and keeps the lines that are listed with some around each.
/// Lines end as they do for the filter: LF, CR, CR LF and LF CR are one end each. Of a very long
/// line only the front is kept, so that what is kept grows with the lines listed, whatever they
/// hold. For one thread.
class LinePicker {
 public:
  /// Lines that follow one another, with an LF between each two.
  struct Hunk {
    std::uint64_t first = 0;  ///< The number of the first line, from 1.
    std::uint64_t end = 0;    ///< One more than that of the last.
    std::string text;
  };

  /// How many lines to keep before and behind each listed one.
  struct Around {
    std::uint32_t before = 0;
    std::uint32_t behind = 0;
  };

  static constexpr std::size_t UsualMost = 2000;

  /// `listed` ascends, and outlives the picker. `mostOfLine` is how many bytes of a line are kept.
  LinePicker(std::span<std::uint32_t const> listed, Around around,
             std::size_t mostOfLine = UsualMost)
      : m_listed(listed), m_around(around), m_mostOfLine(mostOfLine) {
    FindNextWanted();
  }

  void Add(std::string_view bytes);

  /// The lines picked so far.
  [[nodiscard]] std::vector<Hunk> const& Hunks() const { return m_hunks; }

 private:
  void Keep(std::string_view bytes);
  void BeginLine();
  void EndLine(char sign);
  void FindNextWanted();
  [[nodiscard]] bool IsWanted() const { return m_line == m_wanted; }

  std::span<std::uint32_t const> m_listed;  ///< Those around which lines may still be wanted.
  Around m_around;
  std::size_t m_mostOfLine;
  std::uint64_t m_line = 1;           ///< The current line.
  std::uint64_t m_wanted = 0;         ///< The next line to keep, maybe the current; 0 for no more.
  std::optional<char> m_partner;      ///< The sign that would still belong to the last line's end.
  std::optional<std::size_t> m_room;  ///< In bytes, for the current line once it is begun.
  std::vector<Hunk> m_hunks;
};

}  // namespace companion
