#include "merge/pretty_json_writer.h"

#include <algorithm>
#include <nlohmann/json.hpp>

bool IsPlainText(std::string_view text) {
  return std::ranges::all_of(
      text, [](char byte) { return byte >= ' ' && byte <= '~' && byte != '"' && byte != '\\'; });
}

std::string ToJsonString(std::string_view text) {
  return nlohmann::json(text).dump();
}

void PrettyJsonWriter::Bool(bool value) {
  BeginElement();
  Append(value ? "true" : "false");
}

void PrettyJsonWriter::Text(std::string_view value) {
  BeginElement();
  if (IsPlainText(value)) {
    Append("\"");
    Append(value);
    Append("\"");
  } else {
    Append(ToJsonString(value));
  }
}

void PrettyJsonWriter::Flush() {
  m_output.write(m_window.get(), static_cast<std::streamsize>(m_size));
  m_size = 0;
}

void PrettyJsonWriter::Open(std::string_view bracket) {
  BeginElement();
  Append(bracket);
  ++m_depth;
  m_isFirst = true;
}

void PrettyJsonWriter::Close(std::string_view bracket) {
  --m_depth;
  if (!m_isFirst) {
    BeginLine();
  }
  Append(bracket);
  m_isFirst = false;
}

void PrettyJsonWriter::AppendBeyondWindow(std::string_view text) {
  Flush();
  while (text.size() > WindowSize) {
    Append(text.substr(0, WindowSize));
    Flush();
    text.remove_prefix(WindowSize);
  }
  Append(text);
}
