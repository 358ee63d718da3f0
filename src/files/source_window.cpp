#include "files/source_window.h"

#include <algorithm>

#include "files/line_ends.h"

std::string_view SourceWindow::Rest() {
  if (m_begin == m_bytes.size()) {
    ReadMore();
  }
  return std::string_view(m_bytes).substr(m_begin);
}

std::string_view SourceWindow::Line() {
  std::size_t searched = 0;
  for (;;) {
    const std::string_view rest = Rest();
    const std::size_t end = std::min(rest.find_first_of(LineEndBytes, searched), rest.size());
    // The second byte of the line end may stand behind the window.
    if (end + 1 < rest.size()) {
      return rest.substr(0, end + LineEndLength(rest.substr(end)));
    }
    searched = end;
    if (rest.size() >= MostOfLine || !ReadMore()) {
      return std::string_view(m_bytes).substr(m_begin);
    }
  }
}

bool SourceWindow::ReadMore() {
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(Size, m_unread));
  m_bytes.erase(0, m_begin);
  m_begin = 0;
  const std::size_t kept = m_bytes.size();
  m_bytes.resize(kept + count);
  m_failed |= !m_file.Read({m_bytes.data() + kept, count});
  m_unread = m_failed ? 0 : m_unread - count;
  m_bytes.resize(m_failed ? kept : kept + count);
  return m_bytes.size() > kept;
}
