// The parser of warning codes, and the warnings report.
//
// Input: the fields of some warnings, then of some files with markers, in the order in which they
// are consumed below.
//
// What must hold:
// - a code is worth what reading it digit by digit says;
// - a warning is written when its code is worth 1 to 4294967295, and refused else;
// - the report parses back to the warnings written, and has the very bytes of the library's dump;
// - so has the report of markers, with one warning for each marker that has a number;
// - text that is not UTF-8 ends in the library's exception, and nothing else does.

#include <algorithm>
#include <cstdint>
#include <format>
#include <limits>
#include <nlohmann/json.hpp>

#include "converter/json_output.h"
#include "input_bytes.h"
#include "memory_file.h"
#include "merge/files.h"
#include "require.h"

namespace {

using nlohmann::json;
using TesselConverter::JsonOutput;
using TesselConverter::Warning;
using TesselConverter::WarningPosition;

std::uint64_t CodeOf(std::string_view text) {
  if (!text.starts_with('V')) {
    return 0;
  }
  text.remove_prefix(1);
  const bool isNegative = text.starts_with('-');
  text.remove_prefix(isNegative ? 1 : 0);
  const std::uint64_t limit =
      std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (isNegative ? 1 : 0);
  std::uint64_t value = 0;
  for (const char byte : text) {
    const auto digit = static_cast<std::uint64_t>(byte - '0');
    if (byte < '0' || byte > '9' || value > (limit - digit) / 10) {
      return 0;
    }
    value = 10 * value + digit;
  }
  constexpr std::uint64_t tooLarge = 4294967296;
  return isNegative && value != 0 ? tooLarge : std::min(value, tooLarge);
}

json PositionJson(WarningPosition const& position, bool isMain) {
  json j = {{"file", position.file}, {"line", position.line}, {"endLine", position.endLine}};
  if (position.column != 0) {
    j["column"] = position.column;
  }
  if (position.endColumn != 0) {
    j["endColumn"] = position.endColumn;
  }
  if (isMain) {
    j["navigation"] = {{"previousLine", position.previousLine},
                       {"currentLine", position.currentLine},
                       {"nextLine", position.nextLine},
                       {"columns", position.columns}};
  }
  return j;
}

json WarningJson(Warning const& warning) {
  json positions = json::array();
  for (WarningPosition const& position : warning.positions) {
    positions.push_back(PositionJson(position, positions.empty()));
  }
  json j = {{"code", warning.code},        {"cwe", warning.cwe},
            {"sastId", warning.sastId},    {"level", warning.level},
            {"positions", positions},      {"projects", warning.projects},
            {"message", warning.message},  {"falseAlarm", warning.falseAlarm},
            {"favorite", warning.favorite}};
  if (!warning.analyzedSourceFiles.empty()) {
    j["analyzedSourceFiles"] = warning.analyzedSourceFiles;
  }
  return j;
}

Warning ConsumeWarning(InputBytes& data) {
  const auto text = [&data] { return data.TakeText(); };
  Warning warning;
  warning.code = (data.Take<bool>() ? "V" : "") + text();
  warning.message = text();
  warning.sastId = text();
  for (auto count = data.Take<std::uint8_t>() % 4; count > 0; --count) {
    warning.projects.insert(text());
    warning.analyzedSourceFiles.insert(text());
    WarningPosition& position = warning.positions.emplace_back(text(), data.Take<std::uint64_t>());
    position.column = data.Take<std::uint32_t>();
    position.endColumn = data.Take<std::uint8_t>();
    position.previousLine = data.Take<std::int32_t>();
    position.currentLine = ~position.previousLine;
    position.nextLine = position.previousLine / 3;
    position.columns = data.Take<std::uint32_t>();
  }
  warning.cwe = data.Take<std::uint32_t>();
  warning.level = data.Take<std::uint8_t>();
  warning.favorite = data.Take<bool>();
  warning.falseAlarm = data.Take<bool>();
  return warning;
}

/// Holds what `write` leaves in the report, or its exception, against the dump of `expected`.
template <typename Action>
void Check(MemoryFile const& report, json const& expected, Action write) {
  bool isRefused = false;
  try {
    write();
  } catch (json::type_error const& error) {
    isRefused = error.id == 316;
    Require(isRefused, "the only failure is text that is not UTF-8");
  }
  std::string text;
  try {
    text = expected.dump(2) + "\n";
  } catch (json::type_error const&) {
    Require(isRefused, "text that is not UTF-8 is refused");
    return;
  }
  Require(!isRefused, "UTF-8 is not refused");
  const std::string written = report.Read();
  Require(json::parse(written) == expected, "the report parses back");
  Require(written == text, "the report has the bytes of the library");
}

void CheckWriter(MemoryFile const& report, InputBytes& data) {
  const bool isStarted = data.Take<std::uint8_t>() != 0;
  json expected;
  if (isStarted) {
    expected = {{"version", 3}, {"warnings", json::array()}};
  }
  std::vector<Warning> warnings;
  for (auto count = data.Take<std::uint8_t>() % 4; count > 0; --count) {
    Warning const& warning = warnings.emplace_back(ConsumeWarning(data));
    const std::uint64_t code = CodeOf(warning.code);
    Require(warning.GetErrorCode() == code, "the code");
    if (code >= 1 && code <= 4294967295) {
      expected["warnings"].push_back(WarningJson(warning));
    }
  }
  Check(report, expected, [&] {
    JsonOutput writer({.output = report.Path()});
    writer.PrepareOutput();
    if (isStarted) {
      writer.Start();
    }
    for (Warning const& warning : warnings) {
      const std::uint64_t code = CodeOf(warning.code);
      Require(writer.Write(warning) == (code >= 1 && code <= 4294967295), "what is refused");
    }
    writer.Finish();
  });
}

void CheckReportOfMarkers(MemoryFile const& report, InputBytes& data) {
  Files files;
  while (!data.IsEmpty() && files.files.size() < 4) {
    File file;
    file.path = data.TakeText();
    file.lines.resize(data.Take<std::uint8_t>() % 3);
    for (Line& line : file.lines) {
      line.line = data.Take<std::uint32_t>();
      line.markers.resize(data.Take<std::uint8_t>() % 4);
      for (Marker& marker : line.markers) {
        marker.code = data.Take<std::uint64_t>();
        marker.code >>= data.Take<std::uint8_t>() % 64U;
      }
    }
    files.files.insert(file);
  }
  json expected = {{"version", 3}, {"warnings", json::array()}};
  for (File const& file : files.files) {
    for (Line const& line : file.lines) {
      for (Marker const& marker : line.markers) {
        const auto code = static_cast<std::uint32_t>(marker.code);
        if (code != 0) {
          Warning warning;
          warning.code = code < 10 ? "V00" : code < 100 ? "V0" : "V";
          warning.code += std::to_string(code);
          warning.message = "Redundant false alarm marker '//-V" + std::to_string(marker.code) +
                            "'. The analyzer warning is no longer generated on this line.";
          warning.positions.emplace_back(file.PathToString({}), line.line);
          expected["warnings"].push_back(WarningJson(warning));
        }
      }
    }
  }
  Check(report, expected, [&] { files.SaveQlnReport(report.Path()); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static const MemoryFile report;
  InputBytes data(bytes, size);
  CheckWriter(report, data);
  CheckReportOfMarkers(report, data);
  return 0;
}
