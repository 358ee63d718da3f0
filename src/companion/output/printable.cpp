#include "companion/output/printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <format>
#include <utility>

namespace companion {

namespace {

unsigned char ByteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool Continues(unsigned char byte) {
  return (byte & 0xC0U) == 0x80;
}

/// Of a character that takes more than one byte: what it stands for in Unicode.
std::uint32_t CodePoint(std::string_view character) {
  std::uint32_t point = ByteAt(character, 0) & (0xFFU >> (character.size() + 1));
  for (const char byte : character.substr(1)) {
    point = (point << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  return point;
}

/// Whether it has no shape of its own, and turns or hides the text around it.
bool IsHidden(std::uint32_t point) {
  constexpr std::pair<std::uint32_t, std::uint32_t> hidden[] = {
      {0x61C, 0x61C}, {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x2069}, {0xFEFF, 0xFEFF}};
  return std::ranges::any_of(
      hidden, [point](auto const& range) { return range.first <= point && point <= range.second; });
}

/// Also those that take two bytes: some terminals obey them.
bool IsControl(std::string_view character) {
  const unsigned char first = ByteAt(character, 0);
  return first < 0x20 || first == 0x7F || (first == 0xC2 && ByteAt(character, 1) < 0xA0);
}

std::string Escaped(std::string_view bytes) {
  if (bytes == "\n") {
    return "\\n";
  }
  if (bytes == "\t") {
    return "\\t";
  }
  std::string escaped;
  for (const char byte : bytes) {
    escaped += std::format("\\x{:02x}", static_cast<unsigned char>(byte));
  }
  return escaped;
}

/// How the first `length` bytes of a text, which are one character, are shown; 0 for a byte that
/// belongs to none.
std::string Shown(std::string_view text, std::size_t length) {
  if (length == 0) {
    return Escaped(text.substr(0, 1));
  }
  const std::string_view character = text.substr(0, length);
  if (length > 1 && IsHidden(CodePoint(character))) {
    return std::format("\\u{:04x}", CodePoint(character));
  }
  return IsControl(character) ? Escaped(character) : std::string(character);
}

}  // namespace

std::size_t CharacterLength(std::string_view text) {
  const unsigned char first = ByteAt(text, 0);
  const unsigned char second = ByteAt(text, 1);
  if (first < 0x80) {
    return 1;
  }
  if (first < 0xC2 || first > 0xF4 || !Continues(second)) {
    return 0;
  }
  if (first < 0xE0) {
    return 2;
  }
  if (!Continues(ByteAt(text, 2)) || (first == 0xE0 && second < 0xA0) ||
      (first == 0xED && second > 0x9F)) {
    return 0;
  }
  if (first < 0xF0) {
    return 3;
  }
  const bool isInRange = (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second <= 0x8F);
  return Continues(ByteAt(text, 3)) && isInRange ? 4 : 0;
}

std::string Printable(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    printable += Shown(text, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return printable;
}

bool HoldsControl(std::string_view text) {
  for (; !text.empty(); text.remove_prefix(std::max<std::size_t>(CharacterLength(text), 1))) {
    if (CharacterLength(text) > 0 && IsControl(text)) {
      return true;
    }
  }
  return false;
}

}  // namespace companion
