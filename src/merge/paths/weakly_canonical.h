// Canonical paths, the same with every standard library.
#pragma once

#include <filesystem>

/// std::filesystem::weakly_canonical, but always absolute: a relative path is resolved against the
/// directory in which the program runs, even if nothing of the path exists. Some standard libraries
/// leave such a path relative, and then it cannot be told where it is below the source-tree root.
/// Throws std::filesystem::filesystem_error as the standard function does.
[[nodiscard]] inline std::filesystem::path WeaklyCanonical(std::filesystem::path const& path) {
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(path);
  return canonical.is_absolute()
             ? canonical
             : std::filesystem::weakly_canonical(std::filesystem::current_path() / path);
}
