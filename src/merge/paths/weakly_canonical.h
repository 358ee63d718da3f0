// Canonical paths, the same with every standard library.
#pragma once

#include <filesystem>

/// std::filesystem::weakly_canonical, always absolute: a relative path is resolved against the
/// directory the program runs in, also when nothing of it exists. Some standard libraries leave
/// such a path relative, and then no relation to the source-tree root can be found.
/// Throws std::filesystem::filesystem_error as the standard function does.
[[nodiscard]] inline std::filesystem::path WeaklyCanonical(std::filesystem::path const& path) {
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(path);
  return canonical.is_absolute()
             ? canonical
             : std::filesystem::weakly_canonical(std::filesystem::current_path() / path);
}
