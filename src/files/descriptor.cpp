#include "files/descriptor.h"

#include "files/last_error.h"

Transfer Descriptor::Read(std::span<char> bytes) const noexcept {
  Transfer done;
  while (done.size < bytes.size()) {
    const ssize_t count = ::read(m_descriptor, bytes.data() + done.size, bytes.size() - done.size);
    if (count > 0) {
      done.size += static_cast<std::size_t>(count);
    } else if (count == 0) {
      break;
    } else if (errno != EINTR) {
      done.error = LastError();
      break;
    }
  }
  return done;
}

Transfer Descriptor::Write(std::span<char const> bytes) const noexcept {
  Transfer done;
  while (done.size < bytes.size() && !done.error) {
    const ssize_t count = ::write(m_descriptor, bytes.data() + done.size, bytes.size() - done.size);
    if (count > 0) {
      done.size += static_cast<std::size_t>(count);
    } else if (count == 0) {
      // Nothing is taken, and no reason given: to try again might be to try for ever.
      done.error = std::make_error_code(std::errc::io_error);
    } else if (errno != EINTR) {
      done.error = LastError();
    }
  }
  return done;
}

std::error_code Descriptor::SeekTo(off_t position) const noexcept {
  return ::lseek(m_descriptor, position, SEEK_SET) < 0 ? LastError() : std::error_code();
}
