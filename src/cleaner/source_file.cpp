#include "cleaner/source_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace {

bool SameTime(timespec const& left, timespec const& right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

}  // namespace

SourceFile::SourceFile(std::filesystem::path const& path) noexcept
    : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (IsOpen() && (::fstat(m_descriptor, &m_status) != 0 || !S_ISREG(m_status.st_mode))) {
    ::close(m_descriptor);
    m_descriptor = -1;
  }
}

SourceFile::~SourceFile() {
  if (IsOpen()) {
    ::close(m_descriptor);
  }
}

bool SourceFile::Read(std::span<char> bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t count = ::read(m_descriptor, bytes.data(), bytes.size());
    if (count > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool SourceFile::Rewind() noexcept {
  return ::lseek(m_descriptor, 0, SEEK_SET) == 0;
}

bool SourceFile::StandsUnchangedAt(std::filesystem::path const& path) const noexcept {
  struct stat now{};
  return ::stat(path.c_str(), &now) == 0 && now.st_dev == m_status.st_dev &&
         now.st_ino == m_status.st_ino && now.st_size == m_status.st_size &&
         SameTime(now.st_mtim, m_status.st_mtim) && SameTime(now.st_ctim, m_status.st_ctim);
}
