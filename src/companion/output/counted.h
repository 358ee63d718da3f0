// Numbers of things in words.
#pragma once

#include <cstdint>
#include <format>
#include <string>
#include <string_view>

namespace companion {

/// "1 file", "2 files".
[[nodiscard]] inline std::string Counted(std::uint64_t count, std::string_view thing) {
  return std::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

/// "3 files kept, 1 refused".
[[nodiscard]] inline std::string DoneAndRefused(std::uint64_t done, std::string_view how,
                                                std::uint64_t refused) {
  std::string text = Counted(done, "file") + " " + std::string(how);
  if (refused > 0) {
    text += std::format(", {} refused", refused);
  }
  return text;
}

}  // namespace companion
