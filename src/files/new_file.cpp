#include "files/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "files/file_status.h"
#include "files/last_error.h"

// Appending, so that even someone who opens the new file at once, to save a text in it, loses none
// of that text.
NewFile::NewFile(std::filesystem::path const& path, mode_t mode) noexcept
    : m_path(path),
      m_mode(mode),
      m_file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, mode)),
      m_isMade(m_file.IsOpen()),
      m_error(m_isMade ? std::error_code() : LastError()) {}

bool NewFile::Write(std::span<char const> bytes) noexcept {
  if (!m_error) {
    const auto [size, error] = m_file.Write(bytes);
    m_size += static_cast<off_t>(size);
    m_error = error;
  }
  return !m_error;
}

std::error_code NewFile::Finish() noexcept {
  if (!m_error) {
    m_error = Close();
  }
  return m_error;
}

std::error_code NewFile::Close() noexcept {
  struct stat status{};
  // All is written; not to learn more of it is no failure.
  const bool isKnown = ::fstat(m_file.Get(), &status) == 0;
  if (isKnown) {
    m_identity = FileIdentity(status);
    if (status.st_size != m_size) {
      return std::make_error_code(std::errc::file_exists);
    }
  }
  const bool hasMode = isKnown && (status.st_mode & 07777) == m_mode;
  const bool isDone = (hasMode || ::fchmod(m_file.Get(), m_mode) == 0) && m_file.Close();
  return isDone ? std::error_code() : LastError();
}

bool NewFile::Withdraw() noexcept {
  if (!m_isMade) {
    return true;
  }
  struct stat own{};
  if (m_file.IsOpen() && ::fstat(m_file.Get(), &own) == 0) {
    m_identity = FileIdentity(own);
  }
  const auto there = StatusAt(m_path);
  return there && FileIdentity(*there) == m_identity && there->st_size == m_size &&
         ::unlink(m_path.c_str()) == 0;
}
