#include "merge/pretty_json_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

namespace {

constexpr std::size_t WindowSize = std::size_t{64} * 1024;

template <typename Integer>
void AppendNumber(std::string& text, Integer value) {
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  text.append(digits.data(), end);
}

}  // namespace

bool IsPlainText(std::string_view text) {
  return std::ranges::all_of(
      text, [](char byte) { return byte >= ' ' && byte <= '~' && byte != '"' && byte != '\\'; });
}

std::string ToJsonString(std::string_view text) {
  return nlohmann::json(text).dump();
}

void PrettyJsonWriter::Key(std::string_view key) {
  BeginElement();
  m_text += '"';
  m_text += key;
  m_text += "\": ";
  m_afterKey = true;
}

void PrettyJsonWriter::Number(std::uint64_t value) {
  BeginElement();
  AppendNumber(m_text, value);
}

void PrettyJsonWriter::SignedNumber(std::int64_t value) {
  BeginElement();
  AppendNumber(m_text, value);
}

void PrettyJsonWriter::Bool(bool value) {
  BeginElement();
  m_text += value ? "true" : "false";
}

void PrettyJsonWriter::Text(std::string_view value) {
  BeginElement();
  if (IsPlainText(value)) {
    m_text += '"';
    m_text += value;
    m_text += '"';
  } else {
    m_text += ToJsonString(value);
  }
}

void PrettyJsonWriter::Flush() {
  m_output.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
  m_text.clear();
}

void PrettyJsonWriter::Open(char bracket) {
  BeginElement();
  m_text += bracket;
  ++m_depth;
  m_isFirst = true;
}

void PrettyJsonWriter::Close(char bracket) {
  --m_depth;
  if (!m_isFirst) {
    BeginLine();
  }
  m_text += bracket;
  m_isFirst = false;
  if (m_text.size() >= WindowSize) {
    Flush();
  }
}

void PrettyJsonWriter::BeginElement() {
  if (m_afterKey) {
    m_afterKey = false;
  } else if (m_depth > 0) {
    if (!m_isFirst) {
      m_text += ',';
    }
    BeginLine();
  }
  m_isFirst = false;
}

void PrettyJsonWriter::BeginLine() {
  m_text += '\n';
  m_text.append(2 * m_depth, ' ');
}
