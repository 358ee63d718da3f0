// Telling whether a file is still the one that was looked at.
#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <optional>

/// Which file stands at a path, and when it last changed, as the file system tells it. Two equal
/// stamps mean the same file with the same content.
class FileStamp {
 public:
  /// The stamp of the ordinary file at `path`, links followed; nothing for anything else: a pipe or
  /// a device has no end to rely on, and opening it may wait for ever.
  [[nodiscard]] static std::optional<FileStamp> OfRegularFile(std::filesystem::path const& path);

  friend bool operator==(FileStamp const&, FileStamp const&) = default;

 private:
  FileStamp() = default;

  std::uint64_t m_device = 0;
  std::uint64_t m_inode = 0;
  std::int64_t m_size = 0;
  std::int64_t m_modifiedSeconds = 0;
  std::int64_t m_modifiedNanoseconds = 0;
  std::int64_t m_changedSeconds = 0;
  std::int64_t m_changedNanoseconds = 0;
};
