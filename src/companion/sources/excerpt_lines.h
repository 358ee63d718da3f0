// Looking up lines that were picked out of a source.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "companion/sources/line_picker.h"

namespace companion {

/// The texts of picked lines, to be asked for in ascending order. The hunks must outlive it.
class ExcerptLines {
 public:
  explicit ExcerptLines(std::vector<LinePicker::Hunk> const& hunks)
      : m_hunk(hunks.begin()), m_end(hunks.end()) {
    BeginHunk();
  }

  /// Without its end; empty when the line was not picked.
  [[nodiscard]] std::string_view Of(std::uint64_t line) {
    while (m_hunk != m_end && m_hunk->end <= line) {
      ++m_hunk;
      BeginHunk();
    }
    if (m_hunk == m_end || line < m_hunk->first) {
      return {};
    }
    for (; m_line < line; ++m_line) {
      m_rest.remove_prefix(m_rest.find('\n') + 1);
    }
    return m_rest.substr(0, m_rest.find('\n'));
  }

 private:
  void BeginHunk() {
    if (m_hunk != m_end) {
      m_line = m_hunk->first;
      m_rest = m_hunk->text;
    }
  }

  std::vector<LinePicker::Hunk>::const_iterator m_hunk;
  std::vector<LinePicker::Hunk>::const_iterator m_end;
  std::uint64_t m_line = 0;  ///< Of the front of m_rest, which is what is left of the hunk.
  std::string_view m_rest;
};

}  // namespace companion
