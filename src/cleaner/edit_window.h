// Copying a file in large pieces while leaving some of its bytes out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "cleaner/temporary_file.h"
#include "merge/input_file.h"

/// A window on the input whose bytes are kept or dropped from the front. What is kept moves
/// together inside the window, so that each window is read once and written once.
class EditWindow {
 public:
  /// Bytes held at once, whatever the size of the file.
  static constexpr std::size_t Size = std::size_t{128} * 1024;

  /// Both files must outlive the window.
  EditWindow(InputFile& input, TemporaryFile& output);

  /// The bytes not yet kept or dropped. Empty before the first Refill.
  [[nodiscard]] std::string_view Rest() const noexcept {
    return {m_buffer.get() + m_position, m_size - m_position};
  }

  /// Whether there are bytes left; when the window is used up, writes what was kept of it and
  /// reads the next one.
  [[nodiscard]] bool Refill();

  /// Keeps the first `count` bytes of Rest().
  void Keep(std::size_t count);

  /// Drops the first `count` bytes of Rest().
  void Drop(std::size_t count) { m_position += count; }

  /// How many bytes of Rest() come before the next CR or LF; all of them when none follows.
  [[nodiscard]] std::size_t LengthToLineEnd();

 private:
  [[nodiscard]] std::size_t Find(char byte) const;

  InputFile& m_input;
  TemporaryFile& m_output;
  std::unique_ptr<char[]> m_buffer;
  std::size_t m_size = 0;
  std::size_t m_position = 0;
  std::size_t m_kept = 0;  ///< The bytes before this are kept; never beyond m_position.
  // Positions of the next CR and LF, looked up again only once passed: a file may have only one
  // of the two, and must not be searched for the other at every line.
  std::size_t m_nextCr = 0;
  std::size_t m_nextLf = 0;
};
