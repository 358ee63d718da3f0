#include "files/source_file.h"

#include <fcntl.h>

#include <utility>

#include "files/file_status.h"

namespace {

/// Not blocking, so that a pipe is refused instead of waited for.
constexpr int OpenFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

bool SameTime(timespec const& left, timespec const& right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

}  // namespace

SourceFile::SourceFile(std::filesystem::path const& path) noexcept
    : SourceFile(::open(path.c_str(), OpenFlags)) {}

SourceFile::SourceFile(Folder const& folder, std::filesystem::path const& name) noexcept
    : SourceFile(::openat(folder.Handle().Get(), name.c_str(), OpenFlags | O_NOFOLLOW)) {}

SourceFile::SourceFile(int descriptor) noexcept : m_file(descriptor) {
  if (IsOpen() && (::fstat(m_file.Get(), &m_status) != 0 || !S_ISREG(m_status.st_mode))) {
    m_file.Close();
  }
}

bool SourceFile::Read(std::span<char> bytes) noexcept {
  return m_file.Read(bytes).size == bytes.size();
}

std::optional<std::string> SourceFile::ReadWhole() {
  std::string content(Size(), '\0');
  return Rewind() && Read(content) ? std::optional(std::move(content)) : std::nullopt;
}

bool SourceFile::Rewind() noexcept {
  return !m_file.SeekTo(0);
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
  const auto status = StatusAt(path);
  return status && FileIdentity(*status) == Identity();
}
