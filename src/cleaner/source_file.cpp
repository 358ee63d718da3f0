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
    : m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (IsOpen() && (::fstat(m_file.Get(), &m_status) != 0 || !S_ISREG(m_status.st_mode))) {
    m_file.Close();
  }
}

bool SourceFile::Read(std::span<char> bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t count = ::read(m_file.Get(), bytes.data(), bytes.size());
    if (count > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool SourceFile::Rewind() noexcept {
  return ::lseek(m_file.Get(), 0, SEEK_SET) == 0;
}

SourceFile::Standing SourceFile::StandingAt(std::filesystem::path const& path) const noexcept {
  struct stat now{};
  if (::stat(path.c_str(), &now) != 0 || FileIdentity(now) != Identity() ||
      now.st_size != m_status.st_size) {
    return Standing::Changed;
  }
  return SameTime(now.st_mtim, m_status.st_mtim) && SameTime(now.st_ctim, m_status.st_ctim)
             ? Standing::Unchanged
             : Standing::OtherTimesOnly;
}

bool SourceFile::IsNamed(std::filesystem::path const& path) const noexcept {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 && FileIdentity(status) == Identity();
}
