#include "files/input_file.h"

#include <fcntl.h>

InputFile::InputFile(std::filesystem::path const& path) noexcept
    : m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      m_isSeekable(m_file.IsOpen() && !m_file.SeekTo(0)),
      m_failed(!m_file.IsOpen()) {}

std::size_t InputFile::Read(std::span<char> bytes) noexcept {
  if (m_failed) {
    return 0;
  }
  const auto [size, error] = m_file.Read(bytes);
  m_failed = static_cast<bool>(error);
  return size;
}

void InputFile::SeekTo(std::uint64_t position) noexcept {
  m_failed = static_cast<bool>(m_file.SeekTo(static_cast<off_t>(position)));
}
