// Numbers of things in words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <format>
#include <string>
#include <string_view>

namespace companion {

/// "6,325".
[[nodiscard]] inline std::string WithSeparators(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3;) {
    text.insert(at -= 3, ",");
  }
  return text;
}

/// "1 file", "2,000 files".
[[nodiscard]] inline std::string Counted(std::uint64_t count, std::string_view thing) {
  return std::format("{} {}{}", WithSeparators(count), thing, count == 1 ? "" : "s");
}

/// "3 files kept, 1 refused".
[[nodiscard]] inline std::string DoneAndRefused(std::uint64_t done, std::string_view how,
                                                std::uint64_t refused) {
  std::string text = Counted(done, "file") + " " + std::string(how);
  if (refused > 0) {
    text += std::format(", {} refused", WithSeparators(refused));
  }
  return text;
}

}  // namespace companion
