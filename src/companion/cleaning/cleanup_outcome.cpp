#include "companion/cleaning/cleanup_outcome.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "cleaner/backup_name.h"
#include "cleaner/marks_filter.h"
#include "companion/cleaning/restored_text.h"
#include "companion/cleaning/with_blanks.h"
#include "companion/safety/cut_safety.h"
#include "files/file_status.h"
#include "files/source_file.h"
#include "files/source_window.h"

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

using Ranges = std::vector<ByteRange>;

/// What else than all listed markers a cleanup can have taken out: those of the lines that are
/// safe, without the blanks in front of them or with these.
std::vector<Ranges> OtherWays(std::vector<Line> const& lines, std::string_view before) {
  const std::vector<Line> safe = SafeLines(lines, UnsafeLines(lines, before));
  if (safe.empty()) {
    return {};
  }
  return {RangesOf(safe, before), RangesOf(WithBlanks(safe, before), before)};
}

/// A cleaned source without a backup is one that was kept.
bool IsKept(File const& file, fs::path const& source) {
  SourceFile opened(source);
  const auto cleaned = opened.IsOpen() ? opened.ReadWhole() : std::nullopt;
  const auto before = cleaned ? Restored(*cleaned, file) : std::nullopt;
  return before &&
         (before->hasAllPutBack ||
          std::ranges::any_of(OtherWays(file.lines, before->text), [&](Ranges const& ranges) {
            return Without(ranges, before->text) == *cleaned;
          }));
}

/// Throws std::runtime_error when the backup is not the source that was analyzed.
CleanupOutcome OutcomeBeside(FileVersion const& backup, File const& file, fs::path const& root,
                             bool takesBlanks) {
  File record = file;
  record.path = BackupOf(file.path);
  PlannedCut wanted = MarksFilter(record).Preview(root);
  const fs::path source = root / file.path;
  if (!StatusAt(source) && errno == ENOENT) {
    return {.state = State::BrokenOff};
  }
  SourceFile opened(source);
  if (!opened.IsOpen()) {
    return {};
  }
  CleanupOutcome outcome{.versions = PairVersions{opened.Version(), backup}};
  if (!takesBlanks) {
    outcome.state = Comparison(opened).With(wanted);
  }
  if (outcome.state != State::Unknown) {
    return outcome;
  }
  std::vector<Ranges> ways = OtherWays(file.lines, wanted.before);
  ways.push_back(wanted.dropped);
  if (takesBlanks) {
    std::ranges::reverse(ways.begin(), ways.end() - 1);
  }
  for (auto way = ways.begin(); way != ways.end() && outcome.state == State::Unknown; ++way) {
    wanted.dropped = *way;
    outcome.state = opened.Rewind() ? Comparison(opened).With(wanted) : State::Unknown;
  }
  return outcome;
}

}  // namespace

CleanupOutcome OutcomeOf(File const& file, fs::path const& root, bool takesBlanks) {
  const fs::path source = root / file.path;
  try {
    const auto backup = StatusAt(BackupOf(source));
    if (!backup && errno == ENOENT && IsKept(file, source)) {
      return {.state = State::Kept};
    }
    return backup && S_ISREG(backup->st_mode)
               ? OutcomeBeside(FileVersion(*backup), file, root, takesBlanks)
               : CleanupOutcome();
  } catch (std::bad_alloc const&) {
    return {.complaint = "not enough memory to look at " + source.string()};
  } catch (std::exception const&) {  // The backup is not the source that was analyzed.
    return {};
  }
}

}  // namespace companion
