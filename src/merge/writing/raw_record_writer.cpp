#include "merge/writing/raw_record_writer.h"

#include <format>
#include <iterator>
#include <string>

#include "json/pretty_json_writer.h"

namespace {

std::string WithoutBraces(std::string const& json) {
  std::string escaped;
  for (const char byte : json) {
    if (byte == '{' || byte == '}') {
      escaped += byte == '{' ? "\\u007b" : "\\u007d";
    } else {
      escaped += byte;
    }
  }
  return escaped;
}

void Append(Marker const& marker, std::string& text) {
  auto const& [code, columns, offsets] = marker;
  text += '{';
  if (code != 0) {
    text += std::format(R"("code":{},)", code);
  }
  std::format_to(std::back_inserter(text),
                 R"("columns":{{"begin":{},"end":{}}},"offsets":{{"begin":{},"end":{}}}}})",
                 columns.begin, columns.end, offsets.begin, offsets.end);
}

void Append(Line const& line, std::string& text) {
  text += std::format(R"({{"line":{},"markers":[)", line.line);
  for (Marker const& marker : line.markers) {
    text += text.back() == '[' ? "" : ",";
    Append(marker, text);
  }
  text += "]}";
}

}  // namespace

void WriteRawRecord(File const& file, std::filesystem::path const& path, std::ostream& output) {
  std::string text =
      std::format(R"({{"version":{},"path":{},"hash":{},"lines":[)", file.version,
                  WithoutBraces(ToJsonString(path.native())), ToJsonString(file.hash));
  for (Line const& line : file.lines) {
    text += text.back() == '[' ? "" : ",";
    Append(line, text);
  }
  output << text << "]}\n";
}
