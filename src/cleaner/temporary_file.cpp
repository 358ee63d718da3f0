#include "cleaner/temporary_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

TemporaryFile::TemporaryFile(fs::path path) : m_path(std::move(path)) {
  OpenAndLock();
  m_writable = m_descriptor >= 0 && ::ftruncate(m_descriptor, 0) == 0;
  if (m_writable) {
    return;
  }
  const std::error_code reason(errno, std::system_category());
  Close();
  std::error_code ignored;
  if (fs::is_regular_file(m_path, ignored)) {
    throw fs::filesystem_error("cannot write the temporary file", m_path, reason);
  }
}

TemporaryFile::~TemporaryFile() {
  Close();
}

void TemporaryFile::OpenAndLock() {
  // The owner before us removes the file while we wait for its lock; then we hold the lock of a
  // file that is gone, and begin again with the one that stands there now.
  do {
    Close();
    // Not blocking, so that a named pipe in the file's place fails instead of waiting.
    m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    if (m_descriptor < 0) {
      return;
    }
    while (::flock(m_descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
  } while (IsGone());
}

bool TemporaryFile::IsGone() const noexcept {
  struct stat standing{};
  if (::stat(m_path.c_str(), &standing) != 0) {
    return errno == ENOENT;
  }
  struct stat opened{};
  return ::fstat(m_descriptor, &opened) == 0 &&
         (opened.st_dev != standing.st_dev || opened.st_ino != standing.st_ino);
}

void TemporaryFile::Write(std::span<char const> bytes) noexcept {
  while (!bytes.empty() && m_writable) {
    const ssize_t count = ::write(m_descriptor, bytes.data(), bytes.size());
    if (count > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      m_writable = false;  // What follows a lost piece is not written either: cut, never garbled.
    }
  }
}

void TemporaryFile::Close() noexcept {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
    m_descriptor = -1;
  }
}
