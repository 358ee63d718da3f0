// A source file as it was when it was opened.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

/// An ordinary file open for reading; closed by the destructor. Nothing here throws. For use by one
/// thread.
class SourceFile {
 public:
  /// Links are followed. Nothing else than an ordinary file is opened for good: a directory cannot
  /// be read, a pipe or a device has no end to rely on, and none is waited for.
  explicit SourceFile(std::filesystem::path const& path) noexcept;
  ~SourceFile();
  SourceFile(SourceFile const&) = delete;
  SourceFile& operator=(SourceFile const&) = delete;

  [[nodiscard]] bool IsOpen() const noexcept { return m_descriptor >= 0; }

  /// In bytes, when it was opened.
  [[nodiscard]] std::uint64_t Size() const noexcept {
    return static_cast<std::uint64_t>(m_status.st_size);
  }

  /// Fills `bytes` from the current position on; false when that many cannot be read.
  [[nodiscard]] bool Read(std::span<char> bytes) noexcept;

  /// Goes back to the first byte.
  [[nodiscard]] bool Rewind() noexcept;

  /// Whether this very file stands at `path` and has not been changed since it was opened.
  [[nodiscard]] bool StandsUnchangedAt(std::filesystem::path const& path) const noexcept;

 private:
  int m_descriptor;
  struct stat m_status{};
};
