// The states of the marker filter: which bytes of a source are kept, and which are dropped.
#include <algorithm>

#include "cleaner/marks_filter.h"
#include "files/line_ends.h"

void MarksFilter::Filter(EditWindow& window) {
  BeginLine();
  while (window.Refill()) {
    (this->*m_state)(window);
  }
}

void MarksFilter::StateNotInterestedLine(EditWindow& window) {
  // If the listed line is passed already, the unsigned difference is huge, and is never reached.
  m_lineNumber += window.KeepManyLines(m_file.lines[m_lineIndex].line - m_lineNumber);
  window.Keep(window.LengthToLineEnd());
  if (window.Rest().empty()) {
    return;
  }
  KeepLineEnd(window);
  m_column = 0;
  ++m_lineNumber;
  BeginLine();
}

void MarksFilter::StateInterestedLine(EditWindow& window) {
  // Line ends do not stop the count of positions: a marker past the end of its line is looked for
  // in the lines behind it, which are then not counted. The recorded hash rules that out for
  // reports that the analyzer core wrote.
  const std::uint64_t begin = CurrentOffsets().begin;
  const std::size_t available = window.Rest().size();
  if (m_column > begin || begin - m_column >= available) {
    window.Keep(available);
    m_column += available;
    return;
  }
  window.Keep(static_cast<std::size_t>(begin - m_column));
  window.Drop(1);
  m_column = begin + 1;
  m_state = &MarksFilter::StatePassSymbols;
}

void MarksFilter::StatePassSymbols(EditWindow& window) {
  // Drops the current byte at least, and, unsigned as positions are, everything up to the end of
  // the file for an end of 0. The analyzer core writes no such marker.
  const std::uint64_t last = CurrentOffsets().end - 1;
  const std::size_t available = window.Rest().size();
  const std::uint64_t beforeLast = last > m_column ? last - m_column : 0;
  if (beforeLast >= available) {
    window.Drop(available);
    m_column += available;
    return;
  }
  window.Drop(static_cast<std::size_t>(beforeLast) + 1);
  m_column += beforeLast + 1;
  NextMarker();
}

void MarksFilter::StateWriteAll(EditWindow& window) {
  window.Keep(window.Rest().size());
}

/// Chooses the state for the line that begins now. Listed lines without markers have nothing to
/// remove: when one is reached, it is passed over.
void MarksFilter::BeginLine() {
  while (AtListedLine() && m_file.lines[m_lineIndex].markers.empty()) {
    ++m_lineIndex;
  }
  if (m_lineIndex == m_file.lines.size()) {
    m_state = &MarksFilter::StateWriteAll;
  } else {
    m_state =
        AtListedLine() ? &MarksFilter::StateInterestedLine : &MarksFilter::StateNotInterestedLine;
  }
}

/// Keeps the CR or LF at the front of the window, and with it its partner: CR LF and LF CR are one
/// line end.
void MarksFilter::KeepLineEnd(EditWindow& window) {
  const char partner = LineEndPartner(window.Rest().front());
  window.Keep(1);
  if (window.Refill() && window.Rest().front() == partner) {
    window.Keep(1);
  }
}

void MarksFilter::NextMarker() {
  if (++m_markerIndex < m_file.lines[m_lineIndex].markers.size()) {
    m_state = &MarksFilter::StateInterestedLine;
    return;
  }
  m_markerIndex = 0;
  m_state = ++m_lineIndex < m_file.lines.size() ? &MarksFilter::StateNotInterestedLine
                                                : &MarksFilter::StateWriteAll;
}

bool MarksFilter::AtListedLine() const {
  return m_lineIndex < m_file.lines.size() && m_lineNumber == m_file.lines[m_lineIndex].line;
}

Range const& MarksFilter::CurrentOffsets() const {
  return m_file.lines[m_lineIndex].markers[m_markerIndex].offsets;
}
