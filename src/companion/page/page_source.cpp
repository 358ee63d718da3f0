#include "companion/page/page_source.h"

#include <algorithm>
#include <cstddef>
#include <format>
#include <iterator>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "companion/page/page_string.h"
#include "companion/page/shown_line.h"
#include "companion/safety/cut_safety.h"
#include "companion/sources/line_picker.h"

namespace companion {

namespace {

using Hunk = LinePicker::Hunk;

/// Makes what is shown of hunks, and of the markers in them. Lines come in ascending order.
class ShownHunks {
 public:
  explicit ShownHunks(std::vector<LineVotes> const& lines) : m_lines(lines) {}

  void Add(Hunk const& hunk) {
    std::string shown;
    std::string_view rest = hunk.text;
    for (std::uint64_t number = hunk.first; number < hunk.end; ++number) {
      const std::string_view text = rest.substr(0, rest.find('\n'));
      rest.remove_prefix(std::min(rest.size(), text.size() + 1));
      PassLinesBefore(number);
      const ShownLine line = ShowLine(text, TakeMarkersOf(number));
      m_places.insert(m_places.end(), line.places.begin(), line.places.end());
      shown.append(number == hunk.first ? "" : "\n").append(line.text);
    }
    std::format_to(std::back_inserter(m_json), "{}{},", m_json.empty() ? "" : ",", hunk.first);
    AppendPageString(m_json, shown);
  }

  [[nodiscard]] std::string const& Json() const { return m_json; }

  /// Once all hunks are added.
  [[nodiscard]] std::vector<Range> Places() {
    PassLinesBefore(std::numeric_limits<std::uint64_t>::max());
    return std::move(m_places);
  }

 private:
  /// Their markers have no place.
  void PassLinesBefore(std::uint64_t number) {
    for (; m_next < m_lines.size() && m_lines[m_next].line < number; ++m_next) {
      m_places.resize(m_places.size() + m_lines[m_next].markers.size());
    }
  }

  std::vector<Marker> TakeMarkersOf(std::uint64_t number) {
    std::vector<Marker> markers;
    for (; m_next < m_lines.size() && m_lines[m_next].line == number; ++m_next) {
      markers.insert(markers.end(), m_lines[m_next].markers.begin(), m_lines[m_next].markers.end());
    }
    return markers;
  }

  std::vector<LineVotes> const& m_lines;
  std::size_t m_next = 0;  ///< Of the lines.
  std::vector<Range> m_places;
  std::string m_json;
};

/// Puts what is known of lines that are not safe to clean beside those of them that go.
void MarkUnsafe(PageSource& source, std::vector<UnsafeLine> const& unsafe) {
  std::unordered_map<std::uint32_t, CutDanger> dangers;
  for (UnsafeLine const& one : unsafe) {
    dangers.emplace(one.line, one.danger);
  }
  source.unsafe.resize(source.lines.size());
  for (std::size_t line = 0; line < source.lines.size(); ++line) {
    const auto danger = dangers.find(source.lines[line].line);
    if (source.lines[line].goes && danger != dangers.end()) {
      source.unsafe[line] = Words(danger->second);
    }
  }
}

}  // namespace

PageSource ReadPageSource(Reports const& reports, std::filesystem::path const& path,
                          std::filesystem::path const& root, LinePicker::Around around) {
  PageSource source;
  source.lines = VotesOn(reports, path);
  std::erase_if(source.lines, [](LineVotes const& line) { return line.markers.empty(); });
  if (source.lines.empty()) {
    return source;
  }
  std::vector<std::uint32_t> listed;
  std::ranges::transform(source.lines, std::back_inserter(listed), &LineVotes::line);
  constexpr std::size_t mostOfLine = std::size_t{1024} * 1024;  // Of which ShowLine shows less.
  const SourceExcerpt read = ReadExcerpt(reports, path, root, listed, around, mostOfLine);
  source.condition = read.condition;
  MarkUnsafe(source, read.unsafe);
  ShownHunks shown(source.lines);
  if (read.condition == SourceCondition::AsAnalyzed) {
    std::ranges::for_each(read.hunks, [&shown](Hunk const& hunk) { shown.Add(hunk); });
  }
  source.hunks = shown.Json();
  source.places = shown.Places();
  return source;
}

}  // namespace companion
