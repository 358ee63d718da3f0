// Copying a file in large pieces while leaving some of its bytes out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cleaner/edit_output.h"
#include "files/source_file.h"
#include "window_size.h"

/// A window on a source, which is read through it twice: first to be hashed, then to be edited. A
/// source that fits into the window is read only once, and so is one that is not hashed first.
///
/// While editing, bytes are kept or dropped from the front. What is kept moves together inside the
/// window, so that each window is written in one piece.
class EditWindow {
 public:
  /// Bytes held at once, whatever the size of the file.
  static constexpr std::size_t Size = WindowBytes(std::size_t{128} * 1024);

  /// `source` must be open, and outlive the window.
  explicit EditWindow(SourceFile& source);

  /// The SHA-1 of the whole content; nothing when it cannot be read in full.
  [[nodiscard]] std::optional<std::string> HashSource();

  /// Begins at the front, to write what is kept to `output`, which must outlive the window. It
  /// is shown the whole source only if that was not hashed before.
  void BeginEditing(EditOutput& output);

  /// The bytes not yet kept or dropped.
  [[nodiscard]] std::string_view Rest() const noexcept {
    return {m_buffer.get() + m_position, m_size - m_position};
  }

  /// Whether there are bytes left; when the window is used up, writes what was kept of it and
  /// reads the next one. False at the end, or when Failed().
  [[nodiscard]] bool Refill();

  /// Whether the source could not be read in full.
  [[nodiscard]] bool Failed() const noexcept { return m_failed; }

  /// Keeps the first `count` bytes of Rest().
  void Keep(std::size_t count);

  /// Drops the first `count` bytes of Rest().
  void Drop(std::size_t count) {
    const std::uint64_t begin = WindowBegin() + m_position;
    m_output->Drop(begin, begin + count);
    m_position += count;
  }

  /// Keeps a part of the front that holds fewer than `limit` line ends and ends inside a line, or
  /// is empty. Returns how many line ends it holds. Lines are many, and counted so several times as
  /// fast as one by one.
  [[nodiscard]] std::uint64_t KeepManyLines(std::uint64_t limit);

  /// How many bytes of Rest() come before the next CR or LF; all of them when none follows.
  [[nodiscard]] std::size_t LengthToLineEnd();

  /// After the end: all that was kept, if it was never more than the window held.
  [[nodiscard]] std::optional<std::string_view> WholeResult() const;

 private:
  /// Where the window begins, in bytes from the front of the source.
  [[nodiscard]] std::uint64_t WindowBegin() const { return m_source.Size() - m_unread - m_size; }
  void WriteKept();
  void ReadNext();
  void LookForLineEnds();
  [[nodiscard]] std::size_t Find(char byte) const;
  [[nodiscard]] bool FitsWhole() const { return m_source.Size() <= Size; }

  SourceFile& m_source;
  EditOutput* m_output = nullptr;
  std::unique_ptr<char[]> m_buffer;
  bool m_failed = false;
  std::uint64_t m_unread = 0;  ///< Bytes of the source behind the window.
  std::size_t m_size = 0;
  std::size_t m_position = 0;
  std::size_t m_kept = 0;     ///< The bytes before this are kept; never beyond m_position.
  std::size_t m_written = 0;  ///< Of the kept bytes, those before this are written.
  // Positions of the next CR and LF, looked up again only once passed: a file may have only one
  // of the two, and must not be searched for the other at every line.
  std::size_t m_nextCr = 0;
  std::size_t m_nextLf = 0;
};
