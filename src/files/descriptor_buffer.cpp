#include "files/descriptor_buffer.h"

#include <unistd.h>

#include <string_view>

DescriptorBuffer::DescriptorBuffer(Descriptor const& file)
    : m_file(file), m_isTerminal(::isatty(file.Get()) != 0) {
  setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type byte) {
  if (sync() != 0) {
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(byte, traits_type::eof())) {
    sputc(traits_type::to_char_type(byte));
  }
  return traits_type::not_eof(byte);
}

std::streamsize DescriptorBuffer::xsputn(char const* bytes, std::streamsize count) {
  const std::streamsize put = std::streambuf::xsputn(bytes, count);
  const std::string_view text(bytes, static_cast<std::size_t>(put));
  return m_isTerminal && text.find('\n') != std::string_view::npos && sync() != 0 ? 0 : put;
}

int DescriptorBuffer::sync() {
  if (!m_error) {
    m_error = m_file.Write({pbase(), static_cast<std::size_t>(pptr() - pbase())}).error;
  }
  setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
  return m_error ? -1 : 0;
}
