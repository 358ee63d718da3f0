// Which file stands at a path, and in what state.
#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "cleaner/file_identity.h"

namespace tree {

/// Two of the same path are equal when nobody wrote to the file or replaced it between them, as far
/// as the clock of the file system tells. Its permissions and other names do not matter.
struct FileVersion {
  FileIdentity file{};
  std::int64_t size = 0;     ///< In bytes.
  std::int64_t written = 0;  ///< In nanoseconds since 1970.

  friend auto operator<=>(FileVersion const&, FileVersion const&) = default;
};

/// Links are followed. Nothing when nothing stands there. Any thread may call both.
[[nodiscard]] std::optional<FileVersion> VersionOf(std::filesystem::path const& path);
/// Of an open file.
[[nodiscard]] std::optional<FileVersion> VersionOf(int descriptor);

}  // namespace tree
