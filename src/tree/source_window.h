// A window that moves over a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "cleaner/source_file.h"
#include "window_size.h"

namespace tree {

/// Shows a file from its front on, in large pieces. Nothing here throws but std::bad_alloc.
class SourceWindow {
 public:
  /// In bytes.
  static constexpr std::size_t Size = WindowBytes(std::size_t{128} * 1024);

  /// `file` must be open, at its front, and outlive the window.
  explicit SourceWindow(SourceFile& file);

  /// Bytes not yet consumed: at least so many, if the file has them. Valid until the next call.
  [[nodiscard]] std::string_view Rest(std::size_t least = 1);

  void Consume(std::size_t count) { m_begin += count; }

  /// Whether the file could not be read to its end.
  [[nodiscard]] bool Failed() const { return m_failed; }

 private:
  SourceFile& m_file;
  std::uint64_t m_unread;
  std::size_t m_capacity;
  std::unique_ptr<char[]> m_bytes;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  bool m_failed = false;
};

}  // namespace tree
