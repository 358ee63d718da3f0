// Reading a file in large pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "files/descriptor.h"

/// A file open for reading as raw bytes; closed by the destructor. Nothing here throws: a file that
/// cannot be opened reads as empty. For use by one thread at a time.
class InputFile {
 public:
  /// Opening a directory succeeds; reading it then fails.
  explicit InputFile(std::filesystem::path const& path) noexcept;

  /// Fills `bytes` from the current position as far as the file goes; returns how many were read.
  /// Fewer than asked for means the end of the file or, when Failed(), an error.
  [[nodiscard]] std::size_t Read(std::span<char> bytes) noexcept;

  /// Whether SeekTo can work: not in a pipe.
  [[nodiscard]] bool IsSeekable() const noexcept { return m_isSeekable; }

  /// Goes to `position`, in bytes from the front, for another try at reading from there on. If that
  /// cannot be done, Failed() says so.
  void SeekTo(std::uint64_t position) noexcept;

  /// Whether opening, or any reading since the last SeekTo, failed.
  [[nodiscard]] bool Failed() const noexcept { return m_failed; }

 private:
  Descriptor m_file;
  bool m_isSeekable;
  bool m_failed;
};
