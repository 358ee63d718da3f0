#include "cleaner/edit_window.h"

#include <algorithm>
#include <cstring>

#include "merge/hashing/sha1.h"

namespace {

/// So few that their count fits into a byte, which lets the compiler look at many of them at once.
constexpr std::size_t BlockSize = std::min<std::size_t>(64, EditWindow::Size / 8);

/// The number of line ends in the block, if they can be told by their LF: each CR has a LF behind
/// it, which may stand behind the block, and the block ends inside a line. (Where no CR stands
/// alone, every line end has one LF, however CR LF CR LF is divided.)
std::optional<std::uint64_t> CountLineEnds(char const* block) {
  unsigned char feeds = 0;
  unsigned char loneReturns = 0;
  for (std::size_t i = 0; i < BlockSize; ++i) {
    const bool isLoneReturn = (block[i] == '\r') & (block[i + 1] != '\n');
    feeds = static_cast<unsigned char>(feeds + (block[i] == '\n' ? 1 : 0));
    loneReturns = static_cast<unsigned char>(loneReturns | (isLoneReturn ? 1 : 0));
  }
  const char last = block[BlockSize - 1];
  const bool isTold = loneReturns == 0 && last != '\n' && last != '\r';
  return isTold ? std::optional<std::uint64_t>(feeds) : std::nullopt;
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

void EditWindow::BeginEditing(EditOutput& output) {
  m_output = &output;
  const bool isHashed = m_unread == 0;
  if (isHashed && !FitsWhole()) {
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
  m_output->Show(Rest());
  LookForLineEnds();
  return !m_failed;
}

void EditWindow::WriteKept() {
  m_output->Keep({m_buffer.get() + m_written, m_kept - m_written});
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
  std::uint64_t lines = 0;
  std::size_t at = m_position;
  for (; at + BlockSize < m_size; at += BlockSize) {
    const std::optional<std::uint64_t> counted = CountLineEnds(m_buffer.get() + at);
    if (!counted || lines + *counted >= limit) {
      break;
    }
    lines += *counted;
  }
  Keep(at - m_position);
  return lines;
}

std::size_t EditWindow::LengthToLineEnd() {
  if (m_nextCr < m_position) {
    m_nextCr = Find('\r');
  }
  if (m_nextLf < m_position) {
    m_nextLf = Find('\n');
  }
  return std::min(m_nextCr, m_nextLf) - m_position;
}

std::optional<std::string_view> EditWindow::WholeResult() const {
  return FitsWhole() ? std::optional(std::string_view(m_buffer.get(), m_kept)) : std::nullopt;
}

void EditWindow::ReadNext() {
  m_size = static_cast<std::size_t>(std::min<std::uint64_t>(Size, m_unread));
  m_unread -= m_size;
  m_failed = !m_source.Read({m_buffer.get(), m_size});
  if (m_failed) {
    m_size = 0;
  }
}

void EditWindow::LookForLineEnds() {
  m_nextCr = Find('\r');
  m_nextLf = Find('\n');
}

std::size_t EditWindow::Find(char byte) const {
  const std::string_view rest = Rest();
  return m_position + std::min(rest.find(byte), rest.size());
}
