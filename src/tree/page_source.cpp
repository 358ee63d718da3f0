#include "tree/page_source.h"

#include <algorithm>
#include <format>
#include <iterator>
#include <string_view>

#include "tree/line_picker.h"
#include "tree/page_string.h"
#include "tree/picked_texts.h"

namespace tree {

namespace {

using Hunk = LinePicker::Hunk;

std::vector<Range> ShownPlaces(std::vector<LineVotes> const& lines,
                               std::vector<Hunk> const& hunks) {
  std::vector<Range> places;
  PickedTexts texts(hunks);
  for (LineVotes const& line : lines) {
    const std::string_view text = texts.Of(line.line);
    const std::size_t whole = ShownLength(text);
    const auto shown = [text, whole](std::uint64_t bytes) {
      return bytes < text.size() ? ShownLength(text.substr(0, bytes)) : whole;
    };
    for (Marker const& marker : line.markers) {
      places.push_back({shown(marker.offsets.begin), shown(marker.offsets.end)});
    }
  }
  return places;
}

std::string ToJson(std::vector<Hunk> const& hunks) {
  std::string json;
  for (Hunk const& hunk : hunks) {
    std::format_to(std::back_inserter(json), "{}{},", json.empty() ? "" : ",", hunk.first);
    AppendPageString(json, hunk.text);
  }
  return json;
}

}  // namespace

PageSource ReadPageSource(Reports const& reports, std::filesystem::path const& path,
                          std::filesystem::path const& root, std::uint32_t around) {
  PageSource source;
  source.lines = VotesOn(reports, path);
  std::erase_if(source.lines, [](LineVotes const& line) { return line.markers.empty(); });
  if (source.lines.empty()) {
    return source;
  }
  std::vector<std::uint32_t> listed;
  std::ranges::transform(source.lines, std::back_inserter(listed), &LineVotes::line);
  ListedSource read = ReadListedSource(reports, path, root, listed, around);
  source.condition = read.condition;
  if (read.condition != SourceCondition::AsAnalyzed) {
    read.hunks.clear();
  }
  source.places = ShownPlaces(source.lines, read.hunks);
  source.hunks = ToJson(read.hunks);
  return source;
}

}  // namespace tree
