// How a suppression marker and its code are written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What every marker begins with in a source; behind it stands the number of its diagnostic.
inline constexpr std::string_view MarkerBegin = "//-V";

/// The code of a diagnostic as warnings and people name it: V and at least three digits, of the
/// number's lower 32 bits as the analyzer itself prints it.
[[nodiscard]] inline std::string DiagnosticCode(std::uint64_t number) {
  const std::string digits = std::to_string(static_cast<std::uint32_t>(number));
  return (digits.size() < 2 ? "V00" : digits.size() < 3 ? "V0" : "V") + digits;
}
