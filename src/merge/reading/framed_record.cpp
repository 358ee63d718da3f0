#include "merge/reading/framed_record.h"

#include <utility>

bool FramedRecord::Close() {
  while (!traits_type::eq_int_type(underflow(), traits_type::eof())) {
  }
  return m_isBegun && m_depth == 0;
}

FramedRecord::int_type FramedRecord::underflow() {
  m_window.Consume(std::exchange(m_shown, 0));
  setg(nullptr, nullptr, nullptr);
  const bool isClosed = m_isBegun && m_depth == 0;
  if (isClosed || (m_window.Rest().empty() && !m_window.ReadMore())) {
    return traits_type::eof();
  }
  m_isBegun = true;
  m_shown = LengthInWindow();
  // setg takes no pointers to const, but a stream buffer only reads what it is given here.
  char* const begin = const_cast<char*>(m_window.Rest().data());
  setg(begin, begin, begin + m_shown);
  return traits_type::to_int_type(*begin);
}

std::size_t FramedRecord::LengthInWindow() {
  std::size_t length = 0;
  do {
    const char byte = m_window.Rest()[length++];
    m_depth += static_cast<int>(byte == '{') - static_cast<int>(byte == '}');
  } while (m_depth != 0 && length < m_window.Rest().size());
  return length;
}
