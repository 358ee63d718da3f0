#include "companion/page/page_source_json.h"

#include <algorithm>
#include <cstddef>
#include <format>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "companion/page/line_votes_text.h"
#include "companion/page/page_string.h"
#include "merge/marker_text.h"

namespace companion {

namespace {

/// An array of values that are JSON themselves.
std::string ToJson(std::vector<std::string> const& values) {
  std::string json = "[";
  for (std::string const& value : values) {
    json += json.size() > 1 ? "," : "";
    json += value;
  }
  return json += "]";
}

std::string NameOf(std::uint64_t code) {
  return '"' + DiagnosticCode(code) + '"';
}

}  // namespace

std::string PageSourceJson::Of(std::filesystem::path const& path, PageSource const& source,
                               std::string_view inTheWay, Reports const& reports) {
  std::string json = "[";
  AppendPageString(json, path.native());
  json += ',';
  if (inTheWay.empty()) {
    json += std::to_string(static_cast<int>(source.condition));
  } else {
    AppendPageString(json, inTheWay);
  }
  json += ",[";
  AppendLines(json, source, reports);
  return json.append("],[").append(source.hunks).append("]]");
}

void PageSourceJson::AppendLines(std::string& json, PageSource const& source,
                                 Reports const& reports) {
  std::string_view comma;
  auto place = source.places.begin();
  for (std::size_t index = 0; index < source.lines.size(); ++index) {
    LineVotes const& line = source.lines[index];
    std::format_to(std::back_inserter(json), "{}{},{},{}", comma, line.line, line.markers.size(),
                   m_votes.NumberOf(LineVotesText(line, reports, source.unsafe[index])));
    for (Marker const& marker : line.markers) {
      std::format_to(std::back_inserter(json), ",{},{},{}", place->begin, place->end,
                     m_codes.NumberOf(marker.code));
      ++place;
    }
    comma = ",";
  }
}

std::string PageSourceJson::Codes() const {
  std::vector<std::string> names;
  std::ranges::transform(m_codes.InOrder(), std::back_inserter(names), NameOf);
  return ToJson(names);
}

std::string PageSourceJson::Votes() const {
  return ToJson(m_votes.InOrder());
}

}  // namespace companion
