#include "merge/reading/report_window.h"

#include <algorithm>
#include <cstring>
#include <utility>

ReportWindow::ReportWindow(std::filesystem::path const& path)
    : m_input(path), m_bytes(std::make_unique_for_overwrite<char[]>(Size + Padding)) {
  std::memset(m_bytes.get(), 0, Padding);
}

bool ReportWindow::ReadMore() {
  if (m_isAtEnd) {
    return false;
  }
  if (const std::size_t dropped = std::min(m_begin, m_marked); dropped > 0) {
    std::memmove(m_bytes.get(), m_bytes.get() + dropped, m_end - dropped);
    m_end -= dropped;
    m_begin -= dropped;
    m_marked -= m_marked == NoMark ? 0 : dropped;
  }
  if (m_begin + Size > m_size) {
    Grow();
  }
  const std::size_t room = m_size - m_end;
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

void ReportWindow::PassOverByteOrderMark() {
  constexpr std::string_view mark = "\xef\xbb\xbf";
  while (Rest().size() < mark.size() && ReadMore()) {
  }
  Consume(Rest().starts_with(mark) ? mark.size() : 0);
}

/// Twice what is needed: a report of any length is then copied about once in all.
void ReportWindow::Grow() {
  m_size = 2 * (m_begin + Size);
  auto bytes = std::make_unique_for_overwrite<char[]>(m_size + Padding);
  std::memcpy(bytes.get(), m_bytes.get(), m_end);
  m_bytes = std::move(bytes);
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
