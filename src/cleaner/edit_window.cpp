#include "cleaner/edit_window.h"

#include <algorithm>
#include <cstring>

#include "merge/sha1.h"

namespace {

/// So few that their count fits into a byte, which lets the compiler count many of them at once.
constexpr std::size_t BlockSize = std::min<std::size_t>(64, EditWindow::Size / 8);

std::uint8_t CountLineFeeds(char const* block) {
  std::uint8_t count = 0;
  for (std::size_t i = 0; i < BlockSize; ++i) {
    count = static_cast<std::uint8_t>(count + static_cast<std::uint8_t>(block[i] == '\n'));
  }
  return count;
}

}  // namespace

EditWindow::EditWindow(SourceFile& source)
    : m_source(source),
      m_buffer(std::make_unique_for_overwrite<char[]>(
          std::min<std::uint64_t>(Size, std::max<std::uint64_t>(source.Size(), 1)))),
      m_unread(source.Size()) {}

std::optional<std::string> EditWindow::HashSource() {
  SHA1 sha1;
  while (m_unread > 0 && !m_failed) {
    ReadNext();
    sha1.add(m_buffer.get(), m_size);
  }
  return m_failed ? std::nullopt : std::optional(sha1.getHash());
}

void EditWindow::BeginEditing(TemporaryFile& output) {
  m_output = &output;
  if (!FitsWhole()) {
    m_failed = m_failed || !m_source.Rewind();
    m_unread = m_source.Size();
    m_size = 0;
  }
  LookForLineEnds();
}

bool EditWindow::Refill() {
  if (m_position < m_size) {
    return true;
  }
  WriteKept();
  if (m_unread == 0 || m_failed) {
    return false;
  }
  ReadNext();
  m_position = 0;
  m_kept = 0;
  m_written = 0;
  LookForLineEnds();
  return !m_failed;
}

void EditWindow::WriteKept() {
  m_output->Write({m_buffer.get() + m_written, m_kept - m_written});
  m_written = m_kept;
}

void EditWindow::Keep(std::size_t count) {
  if (m_kept != m_position) {
    std::memmove(m_buffer.get() + m_kept, m_buffer.get() + m_position, count);
  }
  m_kept += count;
  m_position += count;
}

std::uint64_t EditWindow::KeepManyLines(std::uint64_t limit) {
  // A LF is not known to stand alone where a CR, or the next window, begins behind it.
  const std::size_t end = std::max<std::size_t>(NextCr(), 1) - 1;
  std::uint64_t lines = 0;
  std::size_t at = m_position;
  for (; at + BlockSize <= end; at += BlockSize) {
    const std::uint64_t counted = lines + CountLineFeeds(m_buffer.get() + at);
    if (counted >= limit) {
      break;
    }
    lines = counted;
  }
  Keep(at - m_position);
  return lines;
}

std::size_t EditWindow::LengthToLineEnd() {
  if (m_nextLf < m_position) {
    m_nextLf = Find('\n');
  }
  return std::min(NextCr(), m_nextLf) - m_position;
}

std::optional<std::string_view> EditWindow::WholeResult() const {
  return FitsWhole() ? std::optional(std::string_view(m_buffer.get(), m_kept)) : std::nullopt;
}

void EditWindow::ReadNext() {
  m_size = static_cast<std::size_t>(std::min<std::uint64_t>(Size, m_unread));
  m_unread -= m_size;
  m_failed = !m_source.Read({m_buffer.get(), m_size});
}

void EditWindow::LookForLineEnds() {
  m_nextCr = Find('\r');
  m_nextLf = Find('\n');
}

std::size_t EditWindow::NextCr() {
  if (m_nextCr < m_position) {
    m_nextCr = Find('\r');
  }
  return m_nextCr;
}

std::size_t EditWindow::Find(char byte) const {
  const std::string_view rest = Rest();
  return m_position + std::min(rest.find(byte), rest.size());
}
