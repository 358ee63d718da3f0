#include "merge/writing/structured_report_writer.h"

#include "json/pretty_json_writer.h"

namespace {

// A report is mostly markers, so these are not put together from their members.

void WriteMarker(PrettyJsonWriter& json, Marker const& marker) {
  const auto write = [&json, &marker](auto const&... front) {
    json.Element(front..., R"("columns": {
                "begin": )",
                 marker.columns.begin, R"(,
                "end": )",
                 marker.columns.end, R"(
              },
              "offsets": {
                "begin": )",
                 marker.offsets.begin, R"(,
                "end": )",
                 marker.offsets.end, R"(
              }
            })");
  };
  if (marker.code != 0) {
    write(R"({
              "code": )",
          marker.code, R"(,
              )");
  } else {
    write(R"({
              )");
  }
}

void WriteLine(PrettyJsonWriter& json, Line const& line) {
  json.BeginObject();
  json.Number("line", line.line);
  json.Key("markers");
  json.BeginArray();
  for (Marker const& marker : line.markers) {
    WriteMarker(json, marker);
  }
  json.EndArray();
  json.EndObject();
}

void WriteFile(PrettyJsonWriter& json, File const& file) {
  json.BeginObject();
  json.Text("hash", file.hash);
  json.Key("lines");
  json.BeginArray();
  for (Line const& line : file.lines) {
    WriteLine(json, line);
  }
  json.EndArray();
  json.Text("path", file.PathToString({}));
  json.EndObject();
}

/// Throws for a path that the library refuses, so that no half of a report is written before it.
void CheckPaths(FileSet const& files) {
  for (File const& file : files) {
    if (!IsPlainText(file.path.native())) {
      static_cast<void>(ToJsonString(file.PathToString({})));
    }
  }
}

}  // namespace

void WriteStructuredReport(std::uint32_t version, FileSet const& files, std::ostream& output) {
  CheckPaths(files);
  PrettyJsonWriter json(output);
  json.BeginObject();
  json.Key("files");
  json.BeginArray();
  for (File const& file : files) {
    WriteFile(json, file);
  }
  json.EndArray();
  json.Number("version", version);
  json.EndObject();
  json.Flush();
}
