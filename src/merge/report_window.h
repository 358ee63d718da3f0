// A window on a report.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

#include "merge/input_file.h"

/// Shows a report from its front on, in large pieces. The window grows only when its reader needs
/// more at once than it holds, and so stays small whatever the size of the report.
class ReportWindow {
 public:
  explicit ReportWindow(std::filesystem::path const& path);

  /// Whether the report could not be opened or read to its end.
  [[nodiscard]] bool Failed() const { return m_input.Failed(); }

  /// What is read and not yet consumed; valid until the next ReadMore.
  [[nodiscard]] std::string_view Rest() const { return {m_bytes.get() + m_begin, m_end - m_begin}; }

  /// Takes `count` bytes off the front of Rest().
  void Consume(std::size_t count) { m_begin += count; }

  /// Reads on behind Rest(), until the window is full. False at the end of the report, or when
  /// reading fails.
  [[nodiscard]] bool ReadMore();

  /// Consumes as long as the front byte is one of `bytes`; false when the report ends there.
  [[nodiscard]] bool SkipAny(std::string_view bytes);

 private:
  struct FreeMemory {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  void Resize(std::size_t capacity);

  InputFile m_input;
  std::size_t m_capacity = 0;
  std::unique_ptr<char, FreeMemory> m_bytes;  ///< From malloc, so that it can grow in place.
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
};
