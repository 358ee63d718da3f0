// The blanks of a C++ source.
#pragma once

#include <string_view>

namespace companion {

/// What compilers take for a space, line ends aside.
inline constexpr std::string_view Blanks = " \t\v\f";

[[nodiscard]] constexpr bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f';
}

}  // namespace companion
