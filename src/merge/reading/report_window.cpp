#include "merge/reading/report_window.h"

#include <algorithm>
#include <cstring>

ReportWindow::ReportWindow(std::filesystem::path const& path)
    : m_input(path), m_bytes(std::make_unique_for_overwrite<char[]>(Size + Padding)) {
  std::memset(m_bytes.get(), 0, Padding);
}

bool ReportWindow::ReadMore() {
  if (m_isAtEnd) {
    return false;
  }
  if (m_begin > 0) {
    std::memmove(m_bytes.get(), m_bytes.get() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
  }
  const std::size_t room = Size - m_end;
  const std::size_t count = m_input.Read({m_bytes.get() + m_end, room});
  m_isAtEnd = count < room;
  m_position += count;
  m_end += count;
  std::memset(m_bytes.get() + m_end, 0, Padding);
  return count > 0;
}

bool ReportWindow::SkipAny(std::string_view bytes) {
  do {
    Consume(std::min(Rest().find_first_not_of(bytes), Rest().size()));
    if (!Rest().empty()) {
      return true;
    }
  } while (ReadMore());
  return false;
}

void ReportWindow::ReturnTo(std::uint64_t position) {
  const std::uint64_t back = Position() - position;
  if (back <= m_begin) {
    m_begin -= static_cast<std::size_t>(back);
    return;
  }
  m_input.SeekTo(position);
  m_position = position;
  m_begin = 0;
  m_end = 0;
  m_isAtEnd = false;
  static_cast<void>(ReadMore());
}

std::string_view ReportWindow::ConsumedFrom(std::uint64_t position) const {
  const std::uint64_t length = Position() - position;
  if (length > m_begin) {
    return {};
  }
  const auto size = static_cast<std::size_t>(length);
  return {m_bytes.get() + m_begin - size, size};
}
