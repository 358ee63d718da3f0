#include "companion/sources/redundant_markers.h"

#include <optional>
#include <string_view>

#include "companion/output/printable.h"
#include "companion/safety/listed_lines.h"
#include "companion/sources/source_check.h"
#include "files/source_file.h"
#include "merge/hashing/sha1.h"

namespace companion {

namespace {

/// Counts the characters of a text up to positions in it, which ascend but for line begins.
class CharacterCount {
 public:
  explicit CharacterCount(std::string_view text) : m_text(text) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    m_position = text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
  }

  /// How many stand before the position.
  [[nodiscard]] std::uint64_t Before(std::size_t position) {
    constexpr std::size_t twoUnits = 4;  // So many bytes has a character of two code units.
    while (m_position < position) {
      const std::size_t length = CharacterLength(m_text.substr(m_position));
      m_count += length == twoUnits ? 2 : 1;
      m_position += length == 0 ? 1 : length;
    }
    return m_count;
  }

 private:
  std::string_view m_text;
  std::size_t m_position;
  std::uint64_t m_count = 0;
};

/// Adds the markers of a line on which they stand.
void Add(Line const& line, ListedLine const& listed, CutDanger danger, CharacterCount& count,
         std::vector<RedundantMarker>& markers) {
  const std::uint64_t lineBegin = count.Before(listed.begin);
  for (Marker const& marker : line.markers) {
    const std::uint64_t begin = count.Before(listed.begin + marker.offsets.begin);
    const std::uint64_t end = count.Before(listed.begin + marker.offsets.end);
    markers.push_back({.code = marker.code,
                       .line = line.line,
                       .byteColumn = marker.offsets.begin + 1,
                       .column = begin - lineBegin + 1,
                       .offset = begin,
                       .length = end - begin,
                       .danger = danger});
  }
}

RedundantMarkers FindIn(std::string_view content, File const& agreed, std::string const& name) {
  RedundantMarkers found;
  CharacterCount count(content);
  const std::vector<UnsafeLine> unsafe = UnsafeLines(agreed.lines, content);
  const std::vector<ListedLine> listed = FindListedLines(agreed.lines, content);
  auto next = unsafe.begin();
  for (std::size_t index = 0; index < listed.size(); ++index) {
    const bool isUnsafe = next != unsafe.end() && next->index == index;
    const CutDanger danger = isUnsafe ? (next++)->danger : CutDanger::None;
    if (danger == CutDanger::NoMarker) {
      found.complaints.push_back(ComplaintOf(*(next - 1), name));
    } else {
      Add(agreed.lines[index], listed[index], danger, count, found.markers);
    }
  }
  return found;
}

}  // namespace

RedundantMarkers FindRedundantMarkers(File const& agreed, std::filesystem::path const& root) {
  const std::filesystem::path path = root / agreed.path;
  SourceFile file(path);
  const auto content = file.IsOpen() ? file.ReadWhole() : std::nullopt;
  if (!content) {
    return {{}, {WhyNotOpen(path).text}};
  }
  if (HashOf(*content) != agreed.hash) {
    return {{}, {NotAsAnalyzed(path)}};
  }
  return FindIn(*content, agreed, path.string());
}

}  // namespace companion
