#include "cleaner/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace {

[[noreturn]] void Fail(int error) {
  throw std::system_error(error, std::system_category());
}

}  // namespace

// Appending, so that even someone who opens the new file at once, to save a text in it, loses none
// of that text.
NewFile::NewFile(std::filesystem::path path, mode_t mode)
    : m_path(std::move(path)),
      m_mode(mode),
      m_file(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, mode)) {
  if (!m_file.IsOpen()) {
    Fail(errno);
  }
}

void NewFile::Write(std::span<char const> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(m_file.Get(), bytes.data(), bytes.size());
    if (count > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
      m_size += count;
    } else if (count == 0 || errno != EINTR) {
      Fail(count == 0 ? EIO : errno);
    }
  }
}

void NewFile::Finish() {
  struct stat status{};
  // All is written; not to learn more of it is no failure.
  const bool isKnown = ::fstat(m_file.Get(), &status) == 0;
  if (isKnown) {
    m_identity = FileIdentity(status);
    if (status.st_size != m_size) {
      Fail(EEXIST);
    }
  }
  const bool hasMode = isKnown && (status.st_mode & 07777) == m_mode;
  if ((!hasMode && ::fchmod(m_file.Get(), m_mode) != 0) || !m_file.Close()) {
    Fail(errno);
  }
}

bool NewFile::Withdraw() noexcept {
  struct stat status{};
  if (m_file.IsOpen() && ::fstat(m_file.Get(), &status) == 0) {
    m_identity = FileIdentity(status);
  }
  return ::lstat(m_path.c_str(), &status) == 0 && FileIdentity(status) == m_identity &&
         status.st_size == m_size && ::unlink(m_path.c_str()) == 0;
}
