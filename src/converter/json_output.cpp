#include "converter/json_output.h"

#include <cstdint>
#include <utility>

namespace TesselConverter {

namespace {

bool HasValidCode(Warning const& warning) {
  const std::uint64_t code = warning.GetErrorCode();
  return code != 0 && code < Warning::InvalidErrorCode;
}

}  // namespace

void JsonOutput::Start() {
  if (std::exchange(m_isOpen, false)) {
    m_json.Restart();
    m_held.str({});
    EmptyFile();
  }
  m_isStarted = true;
}

void JsonOutput::OpenDocument() {
  if (m_isOpen) {
    return;
  }
  m_isOpen = true;
  m_json.BeginObject();
  if (m_isStarted) {
    m_json.Number("version", 3);
  }
  m_json.Key("warnings");
  m_json.BeginArray();
}

bool JsonOutput::Write(Warning const& warning) {
  if (!HasValidCode(warning)) {
    return false;
  }
  OpenDocument();
  m_json.BeginObject();
  if (!warning.analyzedSourceFiles.empty()) {
    WriteTexts("analyzedSourceFiles", warning.analyzedSourceFiles);
  }
  m_json.Text("code", warning.code);
  m_json.Number("cwe", warning.cwe);
  m_json.Bool("falseAlarm", warning.falseAlarm);
  m_json.Bool("favorite", warning.favorite);
  m_json.Number("level", warning.level);
  m_json.Text("message", warning.message);
  m_json.Key("positions");
  m_json.BeginArray();
  for (WarningPosition const& position : warning.positions) {
    WritePosition(position, &position == &warning.positions.front());
  }
  m_json.EndArray();
  WriteTexts("projects", warning.projects);
  m_json.Text("sastId", warning.sastId);
  m_json.EndObject();
  return true;
}

void JsonOutput::Finish() {
  if (m_isStarted || m_isOpen) {
    OpenDocument();
    m_json.EndArray();
    m_json.EndObject();
    m_json.Flush();
    m_stream << m_held.view();
  } else {
    m_stream << "null";
  }
  m_stream << '\n' << std::flush;
  ClearOutput(false);
}

void JsonOutput::WritePosition(WarningPosition const& position, bool isMain) {
  m_json.BeginObject();
  if (WarningPosition::IsValidColumnNumber(position.column)) {
    m_json.Number("column", position.column);
  }
  if (WarningPosition::IsValidColumnNumber(position.endColumn)) {
    m_json.Number("endColumn", position.endColumn);
  }
  m_json.Number("endLine", position.endLine);
  m_json.Text("file", position.file);
  m_json.Number("line", position.line);
  if (isMain) {  // Only the main position is navigated to, even where all its values are 0.
    WriteNavigation(position);
  }
  m_json.EndObject();
}

void JsonOutput::WriteNavigation(WarningPosition const& position) {
  m_json.Key("navigation");
  m_json.BeginObject();
  m_json.Number("columns", position.columns);
  m_json.SignedNumber("currentLine", position.currentLine);
  m_json.SignedNumber("nextLine", position.nextLine);
  m_json.SignedNumber("previousLine", position.previousLine);
  m_json.EndObject();
}

void JsonOutput::WriteTexts(std::string_view key, std::set<std::string> const& texts) {
  m_json.Key(key);
  m_json.BeginArray();
  for (std::string const& text : texts) {
    m_json.Text(text);
  }
  m_json.EndArray();
}

}  // namespace TesselConverter
