#include "converter/json_output.h"

#include <cstdint>
#include <iomanip>
#include <utility>

#include "converter/broken_pipe_guard.h"

namespace TesselConverter {

namespace {

using nlohmann::json;

bool HasValidCode(Warning const& warning) {
  const std::uint64_t code = warning.GetErrorCode();
  return code != 0 && code < Warning::InvalidErrorCode;
}

json FromPosition(WarningPosition const& position, bool isMain) {
  json j = {{"file", position.file}, {"line", position.line}, {"endLine", position.endLine}};
  if (WarningPosition::IsValidColumnNumber(position.column)) {
    j["column"] = position.column;
  }
  if (WarningPosition::IsValidColumnNumber(position.endColumn)) {
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

json FromWarning(Warning const& warning) {
  json positions = json::array();
  for (WarningPosition const& position : warning.positions) {
    // Only the main position is navigated to.
    positions.push_back(FromPosition(position, positions.empty()));
  }
  json j = {{"code", warning.code},
            {"cwe", warning.cwe},
            {"sastId", warning.sastId},
            {"level", warning.level},
            {"positions", std::move(positions)},
            {"projects", warning.projects},
            {"message", warning.message},
            {"falseAlarm", warning.falseAlarm},
            {"favorite", warning.favorite}};
  if (!warning.analyzedSourceFiles.empty()) {
    j["analyzedSourceFiles"] = warning.analyzedSourceFiles;
  }
  return j;
}

}  // namespace

void JsonOutput::Start() {
  m_document = {{"version", 3U}, {"warnings", json::array()}};
}

bool JsonOutput::Write(Warning const& warning) {
  if (!HasValidCode(warning)) {
    return false;
  }
  m_document["warnings"].push_back(FromWarning(warning));
  return true;
}

void JsonOutput::Finish() {
  const BrokenPipeGuard guard;
  m_stream << std::setw(2) << m_document << '\n' << std::flush;
  ClearOutput(false);
}

}  // namespace TesselConverter
