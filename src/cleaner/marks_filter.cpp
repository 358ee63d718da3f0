#include "cleaner/marks_filter.h"

#include <algorithm>
#include <format>
#include <stdexcept>
#include <utility>

#include "cleaner/source_file.h"
#include "cleaner/source_replacement.h"
#include "cleaner/temporary_file.h"

namespace fs = std::filesystem;

namespace {

/// A path with a NUL would name another file to the system than the one that it names here, and
/// without a root a path is in its display form, which names none.
bool NamesFile(fs::path const& source, fs::path const& root) {
  return !root.empty() && source.native().find('\0') == std::string::npos;
}

std::runtime_error HashMismatch(fs::path const& source) {
  return std::runtime_error(std::format("Hash mismatch for file '{}'.", source.native()));
}

}  // namespace

MarksFilter::MarksFilter(File file) : m_file(std::move(file)) {}

void MarksFilter::SaveFilteredFile(fs::path const& root) {
  if (m_file.lines.empty()) {
    return;
  }
  const fs::path source = root / m_file.path;
  SourceFile input(NamesFile(source, root) ? source : fs::path());
  if (!input.IsOpen()) {
    // Making the path canonical may have more to say on why.
    static_cast<void>(m_file.PathToString(root));
    throw HashMismatch(source);
  }
  EditWindow window(input);
  if (window.HashSource() != m_file.hash) {
    throw HashMismatch(source);
  }
  // A line without markers names nothing to remove, and no marker to look for.
  std::erase_if(m_file.lines, [](Line const& line) { return line.markers.empty(); });
  if (!m_file.lines.empty()) {
    Rewrite(source, input, window);
  }
}

void MarksFilter::Rewrite(fs::path const& source, SourceFile const& input, EditWindow& window) {
  TemporaryFile temporary(source.filename());
  window.BeginEditing(temporary);
  Filter(window);
  // Our turn may have been long in coming, and another run may have cleaned the file meanwhile, or
  // an editor saved it. Such a file must not become the backup in place of the original.
  if (window.Failed() || !input.StandsUnchangedAt(source)) {
    if (temporary.IsOpen()) {
      fs::remove(temporary.Path());
    }
    throw HashMismatch(source);
  }
  // A rewritten file has the permissions of a new one, because it is a copy of one.
  const fs::path backup = source.native() + std::string(TempName);
  ReplaceSource(source, backup, temporary, window.WholeResult());
}

void MarksFilter::Filter(EditWindow& window) {
  m_state =
      AtListedLine() ? &MarksFilter::StateInterestedLine : &MarksFilter::StateNotInterestedLine;
  while (window.Refill()) {
    (this->*m_state)(window);
  }
}

void MarksFilter::StateNotInterestedLine(EditWindow& window) {
  // Unsigned: a listed line that is passed already is too far away ever to be reached.
  m_lineNumber += window.KeepManyLines(m_file.lines[m_lineIndex].line - m_lineNumber);
  window.Keep(window.LengthToLineEnd());
  if (window.Rest().empty()) {
    return;
  }
  KeepLineEnd(window);
  m_column = 0;
  ++m_lineNumber;
  if (AtListedLine()) {
    m_state = &MarksFilter::StateInterestedLine;
  }
}

void MarksFilter::StateInterestedLine(EditWindow& window) {
  // Positions count on over a line end: a marker beyond it is found, if at all, in what follows,
  // and without such a line being counted. Recorded hashes rule that out for real reports.
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

/// Keeps the CR or LF at the front of the window, and with it its partner: CR LF and LF CR are one
/// line end.
void MarksFilter::KeepLineEnd(EditWindow& window) {
  const char partner = window.Rest().front() == '\n' ? '\r' : '\n';
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
  return m_lineNumber == m_file.lines[m_lineIndex].line;
}

Range const& MarksFilter::CurrentOffsets() const {
  return m_file.lines[m_lineIndex].markers[m_markerIndex].offsets;
}
