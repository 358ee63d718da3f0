#include "merge/reading/input_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

InputFile::InputFile(std::filesystem::path const& path) noexcept
    : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      m_isSeekable(m_descriptor >= 0 && ::lseek(m_descriptor, 0, SEEK_CUR) == 0),
      m_failed(m_descriptor < 0) {}

InputFile::~InputFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

std::size_t InputFile::Read(std::span<char> bytes) noexcept {
  std::size_t total = 0;
  while (total < bytes.size() && !m_failed) {
    const ssize_t count = ::read(m_descriptor, bytes.data() + total, bytes.size() - total);
    if (count == 0) {
      break;
    }
    if (count > 0) {
      total += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      m_failed = true;
    }
  }
  return total;
}

void InputFile::SeekTo(std::uint64_t position) noexcept {
  if (::lseek(m_descriptor, static_cast<off_t>(position), SEEK_SET) < 0) {
    m_failed = true;
  }
}
