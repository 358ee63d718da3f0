// Commands that people copy.
#pragma once

#include <string>
#include <string_view>

namespace companion {

/// The word as a shell takes it for one: in quotes, unless it is plain.
[[nodiscard]] inline std::string ShellWord(std::string_view word) {
  constexpr std::string_view plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_+-./:@%";
  if (!word.empty() && word.find_first_not_of(plain) == std::string_view::npos) {
    return std::string(word);
  }
  std::string quoted = "'";
  for (const char byte : word) {
    quoted += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
  }
  return quoted += '\'';
}

}  // namespace companion
