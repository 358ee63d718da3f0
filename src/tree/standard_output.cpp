#include "tree/standard_output.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace tree {

StandardOutput::StandardOutput() : m_isTerminal(::isatty(STDOUT_FILENO) != 0) {
  setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
}

StandardOutput::int_type StandardOutput::overflow(int_type byte) {
  if (sync() != 0) {
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(byte, traits_type::eof())) {
    sputc(traits_type::to_char_type(byte));
  }
  return traits_type::not_eof(byte);
}

std::streamsize StandardOutput::xsputn(char const* bytes, std::streamsize count) {
  const std::streamsize put = std::streambuf::xsputn(bytes, count);
  const std::string_view text(bytes, static_cast<std::size_t>(put));
  return m_isTerminal && text.find('\n') != std::string_view::npos && sync() != 0 ? 0 : put;
}

int StandardOutput::sync() {
  WriteOut(pbase(), static_cast<std::size_t>(pptr() - pbase()));
  setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
  return m_error == 0 ? 0 : -1;
}

void StandardOutput::WriteOut(char const* bytes, std::size_t count) {
  while (count > 0 && m_error == 0) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes, count);
    if (written >= 0) {
      bytes += written;
      count -= static_cast<std::size_t>(written);
    } else if (errno != EINTR) {
      m_error = errno;
    }
  }
}

}  // namespace tree
