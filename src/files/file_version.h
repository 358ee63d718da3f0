// Which file it is, and with what content.
#pragma once

#include <sys/stat.h>

#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "files/file_identity.h"

/// Two are equal when they are of one file and nobody wrote to it between them, as far as the clock
/// of the file system tells. Its permissions and names do not matter: sources that are hard links
/// of one file have backups that are, too, and what is done to one of them changes the others'
/// times but for that of writing.
struct FileVersion {
  FileVersion() = default;
  explicit FileVersion(struct stat const& status);

  FileIdentity file;
  std::int64_t size = 0;     ///< In bytes.
  std::int64_t written = 0;  ///< In nanoseconds since 1970.

  friend auto operator<=>(FileVersion const&, FileVersion const&) = default;
};

/// Of what stands at a path now; links are followed. Nothing when nothing stands there. Any thread
/// may call it.
[[nodiscard]] std::optional<FileVersion> VersionOf(std::filesystem::path const& path);
