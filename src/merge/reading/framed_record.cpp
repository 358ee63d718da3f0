#include "merge/reading/framed_record.h"

#include <utility>

ReportText::int_type ReportText::underflow() {
  m_window.Consume(std::exchange(m_shown, 0));
  setg(nullptr, nullptr, nullptr);
  if (m_window.Rest().empty() && !m_window.ReadMore()) {
    return traits_type::eof();
  }
  m_shown = Length(m_window.Rest());
  if (m_shown == 0) {
    return traits_type::eof();
  }
  // setg takes no pointers to const, but a stream buffer only reads what it is given here.
  char* const begin = const_cast<char*>(m_window.Rest().data());
  setg(begin, begin, begin + m_shown);
  return traits_type::to_int_type(*begin);
}

bool FramedRecord::Close() {
  while (!traits_type::eq_int_type(underflow(), traits_type::eof())) {
  }
  return m_isBegun && m_depth == 0;
}

std::size_t FramedRecord::Length(std::string_view held) {
  if (m_isBegun && m_depth == 0) {
    return 0;
  }
  m_isBegun = true;
  std::size_t length = 0;
  do {
    const char byte = held[length++];
    m_depth += static_cast<int>(byte == '{') - static_cast<int>(byte == '}');
  } while (m_depth != 0 && length < held.size());
  return length;
}
