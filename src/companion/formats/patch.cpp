// How a patch is made without looking for differences.
//
// A patch tells which lines of a text go and which come in their place. Usually both texts are
// there and what differs has to be found. Here only the text before is there, and the ranges that
// are left out of it, which is all that differs. So the patch is made in one walk over the ranges:
//
//   1  int a;                          ranges left out: "//-V501" of line 2, "//-V5" of line 3
//   2  b = c; //-V501
//   3  d = e; //-V5                    changes: lines 2 and 3 become "b = c; " and "d = e; "
//   4  int f;
//
// First the ranges are sorted by lines (ChangesOf). A range belongs to the line in which it begins.
// If it takes in that line's end, the line is joined with the next, which then belongs to it, too.
// Changed lines that follow one another are one change: the lines that it replaces, and the text
// that comes in their place, put together of what stands between the ranges.
//
// Then changes become hunks (MakePatch, AppendHunk). Each is shown with three lines around it, so
// two changes share a hunk where at most six lines lie between them. The head of a hunk says on
// which line it begins in both texts:
//
//   @@ -1,4 +1,4 @@                    from line 1 on, four lines; after it also from 1 on, four
//    int a;
//   -b = c; //-V501
//   -d = e; //-V5
//   +b = c;
//   +d = e;
//    int f;
//
// The second number runs ahead of or behind the first by `surplus`: the lines that the hunks before
// have added, less those that they took away.
#include "companion/formats/patch.h"

#include <algorithm>
#include <format>
#include <iterator>
#include <span>
#include <vector>

namespace companion {

namespace {

constexpr std::size_t ContextLines = 3;

/// Whole lines that are next to each other and each changed.
struct Change {
  std::size_t begin = 0;  ///< In bytes of the source before.
  std::size_t end = 0;
  std::size_t line = 0;   ///< How many lines stand before it.
  std::size_t lines = 0;  ///< How many lines it replaces,
  std::string after;      ///< by these.
};

std::size_t LinesIn(std::string_view text) {
  const auto feeds = static_cast<std::size_t>(std::ranges::count(text, '\n'));
  return feeds + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

std::size_t LineBegin(std::string_view text, std::size_t at) {
  return at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
}

/// Where the line that holds `at` ends, behind its line end.
std::size_t LineEnd(std::string_view text, std::size_t at) {
  const std::size_t feed = text.find('\n', at);
  return feed == std::string_view::npos ? text.size() : feed + 1;
}

/// Sorts what is dropped by the lines that it is dropped of. A dropped line end takes in the line
/// behind it, with which its own is joined.
class ChangesOf {
 public:
  explicit ChangesOf(PlannedCut const& source) : m_text(source.before) {
    for (ByteRange const& range : source.dropped) {
      Drop(range);
    }
    Close();
  }

  [[nodiscard]] std::vector<Change> const& All() const { return m_changes; }

 private:
  void Drop(ByteRange const& range) {
    // A line may have many thousand markers, and is to be walked along only once.
    const bool isInChange = !m_changes.empty() && range.begin < m_changes.back().end;
    const std::size_t lineBegin = isInChange ? 0 : LineBegin(m_text, range.begin);
    if (!isInChange && (m_changes.empty() || lineBegin > m_changes.back().end)) {
      Close();
      m_line += LinesIn(m_text.substr(m_counted, lineBegin - m_counted));
      m_counted = lineBegin;
      m_kept = lineBegin;
      m_changes.push_back({lineBegin, lineBegin, m_line, 0, {}});
    }
    Change& change = m_changes.back();
    change.after += m_text.substr(m_kept, range.begin - m_kept);
    m_kept = range.end;
    if (range.end >= change.end) {
      change.end = LineEnd(m_text, range.end);
    }
  }

  void Close() {
    if (!m_changes.empty()) {
      Change& change = m_changes.back();
      change.after += m_text.substr(m_kept, change.end - m_kept);
      change.lines = LinesIn(m_text.substr(change.begin, change.end - change.begin));
      m_kept = change.end;
    }
  }

  std::string_view m_text;
  std::vector<Change> m_changes;
  std::size_t m_kept = 0;     ///< Up to here the last change has its text.
  std::size_t m_counted = 0;  ///< Up to here lines are counted.
  std::size_t m_line = 0;
};

void AppendLines(std::string& patch, char sign, std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = LineEnd(text, 0);
    patch += sign;
    patch += text.substr(0, length);
    if (text[length - 1] != '\n') {
      patch += "\n\\ No newline at end of file\n";
    }
    text.remove_prefix(length);
  }
}

/// `count` lines behind `line` others, as the head of a hunk has them.
std::string LineRange(std::size_t line, std::size_t count) {
  return count == 1 ? std::format("{}", line + 1)
                    : std::format("{},{}", count == 0 ? line : line + 1, count);
}

std::size_t ContextBegin(std::string_view text, std::size_t at) {
  for (std::size_t i = 0; i < ContextLines && at > 0; ++i) {
    at = LineBegin(text, at - 1);
  }
  return at;
}

std::size_t ContextEnd(std::string_view text, std::size_t at) {
  for (std::size_t i = 0; i < ContextLines && at < text.size(); ++i) {
    at = LineEnd(text, at);
  }
  return at;
}

/// Appends the hunk of changes that share their context. `surplus` is by how many lines the text
/// after is longer than that before, as far as the hunks before go.
void AppendHunk(std::string& patch, std::string_view text, std::span<Change const> changes,
                std::ptrdiff_t& surplus) {
  std::size_t at = ContextBegin(text, changes.front().begin);
  const std::size_t end = ContextEnd(text, changes.back().end);
  const std::size_t firstLine =
      changes.front().line - LinesIn(text.substr(at, changes.front().begin - at));
  const std::size_t lines = LinesIn(text.substr(at, end - at));

  std::ptrdiff_t growth = 0;
  std::string body;
  for (Change const& change : changes) {
    AppendLines(body, ' ', text.substr(at, change.begin - at));
    AppendLines(body, '-', text.substr(change.begin, change.end - change.begin));
    AppendLines(body, '+', change.after);
    growth += static_cast<std::ptrdiff_t>(LinesIn(change.after)) -
              static_cast<std::ptrdiff_t>(change.lines);
    at = change.end;
  }
  AppendLines(body, ' ', text.substr(at, end - at));

  const auto newFirst = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(firstLine) + surplus);
  const auto newLines = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(lines) + growth);
  patch +=
      std::format("@@ -{} +{} @@\n", LineRange(firstLine, lines), LineRange(newFirst, newLines));
  patch += body;
  surplus += growth;
}

}  // namespace

Patch MakePatch(std::string_view name, PlannedCut const& source) {
  const ChangesOf changesOf(source);
  std::span<Change const> changes = changesOf.All();
  Patch patch;
  if (changes.empty()) {
    return patch;
  }
  // A name with blanks needs something behind it that ends it.
  const std::string_view end = name.find(' ') == std::string_view::npos ? "\n" : "\t\n";
  patch.text = std::format("--- a/{0}{1}+++ b/{0}{1}", name, end);
  std::ptrdiff_t surplus = 0;
  while (!changes.empty()) {
    std::size_t count = 1;
    while (count < changes.size() &&
           changes[count].line - changes[count - 1].line - changes[count - 1].lines <=
               2 * ContextLines) {
      ++count;
    }
    AppendHunk(patch.text, source.before, changes.first(count), surplus);
    for (Change const& change : changes.first(count)) {
      patch.changedLines += change.lines;
    }
    changes = changes.subspan(count);
  }
  return patch;
}

}  // namespace companion
