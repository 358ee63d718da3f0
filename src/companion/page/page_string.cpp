#include "companion/page/page_string.h"

#include <algorithm>
#include <format>
#include <iterator>
#include <nlohmann/json.hpp>

namespace companion {

namespace {

bool IsAscii(std::string_view bytes) {
  return std::ranges::all_of(bytes, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

bool IsMarkup(char byte) {
  return byte == '<' || byte == '>' || byte == '&';
}

bool StandsForItself(char byte) {
  return byte >= ' ' && byte <= '~' && byte != '"' && byte != '\\' && !IsMarkup(byte);
}

void AppendEscaped(std::string& json, char byte) {
  if (byte == '\n') {
    json += "\\n";  // By far the most frequent.
  } else {
    std::format_to(std::back_inserter(json), "\\u{:04x}", byte);
  }
}

/// Appends the text, with those signs escaped for which `stands` is false.
template <typename Predicate>
void AppendEscaping(std::string& json, std::string_view text, Predicate stands) {
  for (auto at = text.begin(); at != text.end();) {
    const auto special = std::find_if_not(at, text.end(), stands);
    json.append(at, special);
    at = special;
    if (at != text.end()) {
      AppendEscaped(json, *at++);
    }
  }
}

std::string Dump(std::string_view bytes, bool asAscii) {
  return nlohmann::json(bytes).dump(-1, ' ', asAscii, nlohmann::json::error_handler_t::replace);
}

}  // namespace

void AppendPageString(std::string& json, std::string_view bytes) {
  if (!IsAscii(bytes)) {
    AppendEscaping(json, Dump(bytes, true), [](char byte) { return !IsMarkup(byte); });
    return;
  }
  json += '"';
  AppendEscaping(json, bytes, StandsForItself);
  json += '"';
}

std::size_t ShownLength(std::string_view bytes) {
  if (IsAscii(bytes)) {
    return bytes.size();
  }
  std::size_t length = 0;
  for (const char unit : nlohmann::json::parse(Dump(bytes, false)).get<std::string>()) {
    const auto byte = static_cast<unsigned char>(unit);
    constexpr unsigned char firstOfFour = 0xF0;  // Of a character that takes two units.
    const bool isFirst = (byte & 0xC0U) != 0x80;
    length += isFirst ? (byte >= firstOfFour ? 2 : 1) : 0;
  }
  return length;
}

}  // namespace companion
