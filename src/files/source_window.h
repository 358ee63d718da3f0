// A window that moves over a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "files/source_file.h"
#include "window_size.h"

/// Shows a file from its front on, in large pieces. Nothing here throws but std::bad_alloc. For use
/// by one thread.
class SourceWindow {
 public:
  /// How much is read at once, in bytes.
  static constexpr std::size_t Size = WindowBytes(std::size_t{128} * 1024);

  /// Of a line that is longer, Line() gives only so much.
  static constexpr std::size_t MostOfLine = std::size_t{64} * 1024 * 1024;

  /// `file` must be open, at its front, and outlive the window.
  explicit SourceWindow(SourceFile& file) : m_file(file), m_unread(file.Size()) {}

  /// Bytes not yet consumed; none at the end of the file. Valid until the next call.
  [[nodiscard]] std::string_view Rest();

  /// Those of them that belong to the first line, its end included. The window grows for a line
  /// that is longer than what it holds. Valid until the next call.
  [[nodiscard]] std::string_view Line();

  /// Takes the first `count` bytes off Rest().
  void Consume(std::size_t count) { m_begin += count; }

  /// Whether the file ends behind the first `count` bytes of Rest().
  [[nodiscard]] bool IsAtEnd(std::size_t count) const {
    return m_unread == 0 && m_begin + count == m_bytes.size();
  }

  /// Whether the file could not be read to its end.
  [[nodiscard]] bool Failed() const { return m_failed; }

 private:
  bool ReadMore();

  SourceFile& m_file;
  std::uint64_t m_unread;
  std::string m_bytes;
  std::size_t m_begin = 0;
  bool m_failed = false;
};
