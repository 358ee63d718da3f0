#include "json/pretty_json_writer.h"

#include <nlohmann/json.hpp>

bool IsPlainText(std::string_view text) {
  // The loop has no early exit, so that the compiler can make it look at many bytes at once.
  bool isPlain = true;
  for (const char byte : text) {
    isPlain &= (byte >= ' ') & (byte <= '~') & (byte != '"') & (byte != '\\');
  }
  return isPlain;
}

std::string ToJsonString(std::string_view text) {
  return nlohmann::json(text).dump();
}

void PrettyJsonWriter::Bool(bool value) {
  const std::string_view text = value ? "true" : "false";
  End(Put(BeginElement(text.size()), text));
}

void PrettyJsonWriter::Text(std::string_view value) {
  if (value.size() > WindowSize / 2 || !IsPlainText(value)) {
    UnusualText(value);
    return;
  }
  char* at = BeginElement(value.size() + 2);
  *at++ = '"';
  at = Put(at, value);
  *at++ = '"';
  End(at);
}

void PrettyJsonWriter::UnusualText(std::string_view value) {
  const std::string text = ToJsonString(value);
  End(BeginElement(0));
  Flush();
  m_output.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void PrettyJsonWriter::Flush() {
  m_output.write(m_window.get(), static_cast<std::streamsize>(m_size));
  m_size = 0;
}
