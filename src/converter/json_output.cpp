#include "converter/json_output.h"

#include <cstdint>

namespace TesselConverter {

namespace {

bool HasValidCode(Warning const& warning) {
  const std::uint64_t code = warning.GetErrorCode();
  return code != 0 && code < Warning::InvalidErrorCode;
}

}  // namespace

void JsonOutput::Start() {
  m_isStarted = true;
}

void JsonOutput::OpenDocument() {
  if (m_isOpen) {
    return;
  }
  m_isOpen = true;
  m_json.BeginObject();
  if (m_isStarted) {
    m_json.Key("version");
    m_json.Number(3);
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
  m_json.Key("code");
  m_json.Text(warning.code);
  m_json.Key("cwe");
  m_json.Number(warning.cwe);
  m_json.Key("falseAlarm");
  m_json.Bool(warning.falseAlarm);
  m_json.Key("favorite");
  m_json.Bool(warning.favorite);
  m_json.Key("level");
  m_json.Number(warning.level);
  m_json.Key("message");
  m_json.Text(warning.message);
  m_json.Key("positions");
  m_json.BeginArray();
  for (WarningPosition const& position : warning.positions) {
    WritePosition(position, &position == &warning.positions.front());
  }
  m_json.EndArray();
  WriteTexts("projects", warning.projects);
  m_json.Key("sastId");
  m_json.Text(warning.sastId);
  m_json.EndObject();
  return true;
}

void JsonOutput::Finish() {
  if (m_isStarted || m_isOpen) {
    OpenDocument();
    m_json.EndArray();
    m_json.EndObject();
    m_json.Flush();
  } else {
    m_stream << "null";
  }
  m_stream << '\n' << std::flush;
  ClearOutput(false);
}

void JsonOutput::WritePosition(WarningPosition const& position, bool isMain) {
  m_json.BeginObject();
  if (WarningPosition::IsValidColumnNumber(position.column)) {
    m_json.Key("column");
    m_json.Number(position.column);
  }
  if (WarningPosition::IsValidColumnNumber(position.endColumn)) {
    m_json.Key("endColumn");
    m_json.Number(position.endColumn);
  }
  m_json.Key("endLine");
  m_json.Number(position.endLine);
  m_json.Key("file");
  m_json.Text(position.file);
  m_json.Key("line");
  m_json.Number(position.line);
  if (isMain) {  // Only the main position is navigated to, even where all its values are 0.
    WriteNavigation(position);
  }
  m_json.EndObject();
}

void JsonOutput::WriteNavigation(WarningPosition const& position) {
  m_json.Key("navigation");
  m_json.BeginObject();
  m_json.Key("columns");
  m_json.Number(position.columns);
  m_json.Key("currentLine");
  m_json.SignedNumber(position.currentLine);
  m_json.Key("nextLine");
  m_json.SignedNumber(position.nextLine);
  m_json.Key("previousLine");
  m_json.SignedNumber(position.previousLine);
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
