#include "tree/source_window.h"

#include <algorithm>
#include <cstring>

namespace tree {

SourceWindow::SourceWindow(SourceFile& file)
    : m_file(file),
      m_unread(file.Size()),
      m_capacity(static_cast<std::size_t>(std::min<std::uint64_t>(Size, m_unread))),
      m_bytes(std::make_unique_for_overwrite<char[]>(m_capacity)) {}

std::string_view SourceWindow::Rest(std::size_t least) {
  if (m_end - m_begin < least && m_unread > 0 && !m_failed) {
    std::memmove(m_bytes.get(), m_bytes.get() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_capacity - m_end, m_unread));
    m_failed = !m_file.Read({m_bytes.get() + m_end, count});
    if (!m_failed) {
      m_end += count;
      m_unread -= count;
    }
  }
  return {m_bytes.get() + m_begin, m_end - m_begin};
}

}  // namespace tree
