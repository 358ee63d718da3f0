#include "cleaner/edit_window.h"

#include <algorithm>
#include <cstring>

EditWindow::EditWindow(InputFile& input, TemporaryFile& output)
    : m_input(input), m_output(output), m_buffer(std::make_unique_for_overwrite<char[]>(Size)) {}

bool EditWindow::Refill() {
  if (m_position < m_size) {
    return true;
  }
  m_output.Write({m_buffer.get(), m_kept});
  m_size = m_input.Read({m_buffer.get(), Size});
  m_position = 0;
  m_kept = 0;
  m_nextCr = Find('\r');
  m_nextLf = Find('\n');
  return m_size > 0;
}

void EditWindow::Keep(std::size_t count) {
  if (m_kept != m_position) {
    std::memmove(m_buffer.get() + m_kept, m_buffer.get() + m_position, count);
  }
  m_kept += count;
  m_position += count;
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

std::size_t EditWindow::Find(char byte) const {
  const std::string_view rest = Rest();
  return m_position + std::min(rest.find(byte), rest.size());
}
