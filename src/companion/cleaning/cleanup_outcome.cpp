#include "companion/cleaning/cleanup_outcome.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "cleaner/backup_name.h"
#include "cleaner/marks_filter.h"
#include "companion/cleaning/restored_text.h"
#include "companion/safety/cut_safety.h"
#include "companion/safety/listed_lines.h"
#include "files/file_status.h"
#include "files/source_file.h"
#include "files/source_window.h"
#include "merge/hashing/sha1.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

using State = CleanupOutcome::State;

/// Reads the source along the pieces of text that a cleanup keeps.
class Comparison {
 public:
  explicit Comparison(SourceFile& source) : m_window(source) {}

  [[nodiscard]] State With(PlannedCut const& wanted) {
    const std::string_view text = wanted.before;
    std::size_t at = 0;
    for (ByteRange const& range : wanted.dropped) {
      Pass(text.substr(at, range.begin - at));
      at = range.end;
    }
    Pass(text.substr(at));
    if (m_isOther || m_window.Failed() || (!m_isAtEnd && !m_window.Rest().empty())) {
      return State::Unknown;
    }
    return m_isAtEnd ? State::BrokenOff : State::Cleaned;
  }

 private:
  void Pass(std::string_view piece) {
    while (!piece.empty() && !m_isAtEnd && !m_isOther) {
      const std::string_view there = m_window.Rest();
      const std::size_t length = std::min(piece.size(), there.size());
      m_isAtEnd = length == 0;
      m_isOther = piece.substr(0, length) != there.substr(0, length);
      m_window.Consume(length);
      piece.remove_prefix(length);
    }
  }

  SourceWindow m_window;
  bool m_isAtEnd = false;  ///< The source ended before what it should be.
  bool m_isOther = false;
};

/// What is left of the text when the markers of its safe lines are gone.
std::string SafelyCleaned(std::string_view before, std::vector<Line> const& lines) {
  const std::vector<Line> safe = SafeLines(lines, UnsafeLines(lines, before));
  std::string cleaned;
  std::size_t at = 0;
  for (ListedLine const& line : FindListedLines(safe, before)) {
    for (ByteRange const& range : line.dropped) {
      cleaned += before.substr(at, range.begin - at);
      at = range.end;
    }
  }
  return cleaned.append(before.substr(at));
}

/// A cleaned source without a backup is one that was kept. Whether it is, is proved by the recorded
/// hash, with the listed markers put back; be it all, or those of the lines that are safe. What
/// stood in a range beside the marker no report tells: such a source is not known to be clean.
bool IsKept(File const& file, fs::path const& source) {
  SourceFile opened(source);
  const auto cleaned = opened.IsOpen() ? opened.ReadWhole() : std::nullopt;
  if (!cleaned) {
    return false;
  }
  if (const auto before = Restored(*cleaned, file.lines); before && HashOf(*before) == file.hash) {
    return true;
  }
  const auto before = RestoredWhereGone(*cleaned, file.lines);
  return before && HashOf(*before) == file.hash && SafelyCleaned(*before, file.lines) == *cleaned;
}

/// Throws std::runtime_error when the backup is not the source that was analyzed.
CleanupOutcome OutcomeBeside(FileVersion const& backup, File const& file, fs::path const& root) {
  File record = file;
  record.path = BackupOf(file.path);
  const PlannedCut wanted = MarksFilter(record).Preview(root);
  const fs::path source = root / file.path;
  if (!StatusAt(source) && errno == ENOENT) {
    return {.state = State::BrokenOff};
  }
  SourceFile opened(source);
  if (!opened.IsOpen()) {
    return {};
  }
  CleanupOutcome outcome{.state = Comparison(opened).With(wanted),
                         .versions = PairVersions{opened.Version(), backup}};
  record.lines = SafeLines(file.lines, UnsafeLines(file.lines, wanted.before));
  if (outcome.state == State::Unknown && record.lines.size() < file.lines.size() &&
      !record.lines.empty() && opened.Rewind()) {  // The others were left.
    outcome.state = Comparison(opened).With(MarksFilter(record).Preview(root));
  }
  return outcome;
}

}  // namespace

CleanupOutcome OutcomeOf(File const& file, fs::path const& root) {
  const fs::path source = root / file.path;
  try {
    const auto backup = StatusAt(BackupOf(source));
    if (!backup && errno == ENOENT && IsKept(file, source)) {
      return {.state = State::Kept};
    }
    return backup && S_ISREG(backup->st_mode) ? OutcomeBeside(FileVersion(*backup), file, root)
                                              : CleanupOutcome();
  } catch (std::bad_alloc const&) {
    return {.complaint = "not enough memory to look at " + source.string()};
  } catch (std::exception const&) {  // The backup is not the source that was analyzed.
    return {};
  }
}

}  // namespace companion
