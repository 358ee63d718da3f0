#include "merge/writing/files_to_json.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace {

using nlohmann::json;

json FromRange(Range const& range) {
  return {{"begin", range.begin}, {"end", range.end}};
}

json FromMarker(Marker const& marker) {
  json j = {{"columns", FromRange(marker.columns)}, {"offsets", FromRange(marker.offsets)}};
  if (marker.code != 0) {
    j["code"] = marker.code;
  }
  return j;
}

json FromLine(Line const& line) {
  json markers = json::array();
  for (Marker const& marker : line.markers) {
    markers.push_back(FromMarker(marker));
  }
  return {{"line", line.line}, {"markers", std::move(markers)}};
}

json FromFile(File const& file) {
  json lines = json::array();
  for (Line const& line : file.lines) {
    lines.push_back(FromLine(line));
  }
  return {{"path", file.PathToString({})}, {"hash", file.hash}, {"lines", std::move(lines)}};
}

}  // namespace

json FilesToJson(FileSet const& files) {
  json records = json::array();
  for (File const& file : files) {
    records.push_back(FromFile(file));
  }
  return records;
}
