// What stands at a path.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <optional>

/// Of the path itself: a link is not followed. Nothing, with the reason in errno, when the system
/// cannot tell. Any thread may call it.
[[nodiscard]] inline std::optional<struct stat> StatusAt(std::filesystem::path const& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}
