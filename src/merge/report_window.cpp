#include "merge/report_window.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "window_size.h"

namespace {
constexpr std::size_t InitialSize = WindowBytes(std::size_t{256} * 1024);
}

ReportWindow::ReportWindow(std::filesystem::path const& path) : m_input(path) {
  Resize(InitialSize);
}

bool ReportWindow::ReadMore() {
  if (m_begin == 0 && m_end == m_capacity) {
    Resize(4 * m_capacity);
  }
  if (m_begin > 0) {
    std::memmove(m_bytes.get(), m_bytes.get() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
  }
  const std::size_t count = m_input.Read({m_bytes.get() + m_end, m_capacity - m_end});
  m_end += count;
  return count > 0;
}

void ReportWindow::Resize(std::size_t capacity) {
  char* const held = m_bytes.release();
  auto* const resized = static_cast<char*>(std::realloc(held, capacity));
  m_bytes.reset(resized != nullptr ? resized : held);
  if (resized == nullptr) {
    throw std::bad_alloc();
  }
  m_capacity = capacity;
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
