#include "merge/report_window.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace {
constexpr std::size_t InitialSize = std::size_t{256} * 1024;
}

ReportWindow::ReportWindow(InputFile& input) : m_input(input), m_bytes(InitialSize) {}

bool ReportWindow::ReadMore() {
  std::copy(m_bytes.data() + m_begin, m_bytes.data() + m_end, m_bytes.data());
  m_end -= m_begin;
  m_begin = 0;
  if (m_end == m_bytes.size()) {
    m_bytes.resize(2 * m_bytes.size());
  }
  const std::size_t count = m_input.Read(std::span(m_bytes).subspan(m_end));
  m_end += count;
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

std::size_t ReportWindow::FrameRecord() {
  std::int64_t depth = 0;
  std::size_t length = 0;
  do {
    const std::string_view rest = Rest();
    while (length < rest.size()) {
      const char byte = rest[length++];
      depth += static_cast<int>(byte == '{') - static_cast<int>(byte == '}');
      if (depth == 0) {
        return length;
      }
    }
  } while (ReadMore());
  return 0;
}
