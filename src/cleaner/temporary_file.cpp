#include "cleaner/temporary_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "cleaner/fa_cleaner.h"

namespace fs = std::filesystem;

TemporaryFile::TemporaryFile(fs::path const& name) {
  Open(name);
  m_isWhole = m_descriptor >= 0 && MakeEmpty();
  if (!m_isWhole) {
    RefuseForeignText();
  }
}

TemporaryFile::~TemporaryFile() {
  Close();
}

void TemporaryFile::Open(fs::path const& name) {
  // The directory is nearly always there already.
  m_path = faCleaner::GetUncheckedTempDir() / name;
  OpenAndLock();
  if (m_descriptor < 0) {
    const fs::path directory = faCleaner::GetTempDir();
    fs::create_directory(directory);
    m_path = directory / name;
    OpenAndLock();
  }
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
  } while (!IsStillAtPath());
}

bool TemporaryFile::IsStillAtPath() noexcept {
  struct stat opened{};
  if (::fstat(m_descriptor, &opened) != 0) {
    return true;  // Nothing is known of it, and nothing written to it.
  }
  m_isRegular = S_ISREG(opened.st_mode);
  m_foundSize = opened.st_size;
  m_mode = opened.st_mode & 07777;
  struct stat standing{};
  if (::stat(m_path.c_str(), &standing) != 0) {
    return errno != ENOENT;
  }
  return opened.st_dev == standing.st_dev && opened.st_ino == standing.st_ino;
}

bool TemporaryFile::MakeEmpty() const noexcept {
  // A device in the file's place takes what is written, and is no copy of it.
  return m_isRegular && (m_foundSize == 0 || ::ftruncate(m_descriptor, 0) == 0);
}

void TemporaryFile::RefuseForeignText() {
  const std::error_code reason(errno, std::system_category());
  std::error_code ignored;
  const fs::file_type type = fs::status(m_path, ignored).type();
  // What was opened without learning what it is may be a file, too.
  if (type == fs::file_type::regular || (type == fs::file_type::none && m_descriptor >= 0)) {
    Close();  // No destructor runs after this, and the lock must not outlive us.
    throw fs::filesystem_error("cannot write the temporary file", m_path, reason);
  }
}

void TemporaryFile::Write(std::span<char const> bytes) noexcept {
  while (!bytes.empty() && m_isWhole) {
    const ssize_t count = ::write(m_descriptor, bytes.data(), bytes.size());
    if (count > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      m_isWhole = false;  // What follows a lost piece is not written either: cut, never garbled.
    }
  }
}

void TemporaryFile::Close() noexcept {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
    m_descriptor = -1;
  }
}
