// The part of a report that is in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

#include "files/input_file.h"
#include "window_size.h"

/// Goes over a report from its front to its end and holds a part of it, in the same amount of
/// memory for a file of any length. A report that cannot be opened or read looks like one that
/// ends there; nothing is thrown but std::bad_alloc. For use by one thread at a time.
class ReportWindow {
 public:
  /// The most bytes that Rest() has, but where a mark had the window grow.
  static constexpr std::size_t Size = WindowBytes(std::size_t{256} * 1024);

  /// So many bytes of 0 follow Rest() in memory, so that a reader may compare its front with a text
  /// of up to this length, or read until a byte does not fit, without looking for the end.
  static constexpr std::size_t Padding = 80;

  explicit ReportWindow(std::filesystem::path const& path);

  /// Whether the report could not be opened, or not be read to its end since ReturnTo last went
  /// back to what the window no longer held.
  [[nodiscard]] bool Failed() const { return m_input.Failed(); }

  /// What is read and not yet consumed; valid until the next ReadMore or ReturnTo.
  [[nodiscard]] std::string_view Rest() const { return {m_bytes.get() + m_begin, m_end - m_begin}; }

  /// Takes `count` bytes off the front of Rest().
  void Consume(std::size_t count) { m_begin += count; }

  /// Reads on behind Rest(), until the window is full. False when it is full already, at the end of
  /// the report, or when reading fails.
  [[nodiscard]] bool ReadMore();

  /// Consumes as long as the front byte is one of `bytes`; false when the report ends there.
  [[nodiscard]] bool SkipAny(std::string_view bytes);

  /// Consumes the three bytes of UTF-8's mark if the report goes on with them.
  void PassOverByteOrderMark();

  /// Where Rest() begins, in bytes from the front of the report.
  [[nodiscard]] std::uint64_t Position() const { return m_position - Rest().size(); }

  /// Has ReturnTo be able to go back as far as here. In a pipe, the window grows with what is read
  /// from here on, until the mark is moved or taken away.
  void Mark() { m_marked = m_input.IsSeekable() ? NoMark : m_begin; }
  void Unmark() { m_marked = NoMark; }

  /// Makes Rest() begin at an earlier position again, not before the mark.
  void ReturnTo(std::uint64_t position);

  /// What was consumed from `position` on; empty when the window does not hold all of it any more.
  [[nodiscard]] std::string_view ConsumedFrom(std::uint64_t position) const;

 private:
  static constexpr std::size_t NoMark = SIZE_MAX;

  void Grow();

  InputFile m_input;
  std::size_t m_size = Size;  ///< Of m_bytes, less the padding.
  std::unique_ptr<char[]> m_bytes;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  std::size_t m_marked = NoMark;  ///< What is behind it in m_bytes is not dropped.
  std::uint64_t m_position = 0;   ///< Of m_end, in the report.
  bool m_isAtEnd = false;         ///< The report has no more to read.
};
