#include "files/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <format>

#include "files/last_error.h"

namespace {

namespace fs = std::filesystem;

constexpr int Permissions = 0666;

/// Of links in a circle, so many are followed.
constexpr int MostLinks = 40;

/// Whether the path stands for a file that a process has open, as /dev/stdout does.
bool IsOfOpenFile(fs::path const& path) {
  return path.native().starts_with("/proc/");
}

/// Where the path leads if it is a link, also to nothing.
fs::path WithoutLinks(fs::path path) {
  std::error_code error;
  for (int i = 0; i < MostLinks && !IsOfOpenFile(path) && fs::is_symlink(path, error); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return path;
}

bool IsReplaced(fs::path const& path) {
  std::error_code error;
  const fs::file_type type = fs::symlink_status(path, error).type();
  return !IsOfOpenFile(path) &&
         (type == fs::file_type::not_found || type == fs::file_type::regular);
}

}  // namespace

OutputFile::OutputFile(fs::path const& path) : m_path(WithoutLinks(path)), m_written(m_path) {
  if (IsReplaced(m_path)) {
    OpenBeside();
  } else {
    m_file =
        Descriptor(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, Permissions));
  }
  if (m_file.IsOpen()) {
    m_stream.rdbuf(&m_buffer.emplace(m_file));
  } else {
    m_openError = LastError();
  }
}

OutputFile::~OutputFile() {
  if (!m_isFinished && m_buffer && m_written != m_path) {
    ::unlink(m_written.c_str());
  }
}

void OutputFile::OpenBeside() {
  // No other process has our number now, but one that was killed may have left a file of that name;
  // in a container every run may have the same.
  std::error_code error;
  for (int attempt = 0; attempt == 0 || error == std::errc::file_exists; ++attempt) {
    m_written = m_path;
    m_written +=
        std::format(".part{}{}", ::getpid(), attempt == 0 ? "" : std::format("-{}", attempt));
    m_file =
        Descriptor(::open(m_written.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, Permissions));
    error = m_file.IsOpen() ? std::error_code() : LastError();
  }
  struct stat older{};
  if (m_file.IsOpen() && ::stat(m_path.c_str(), &older) == 0) {
    ::fchmod(m_file.Get(), older.st_mode & 0777);  // Whoever may not read it, still may not.
  }
}

std::error_code OutputFile::Error() const {
  return m_buffer ? m_buffer->Error() : m_openError;
}

std::error_code OutputFile::Finish() {
  m_stream.flush();
  if (const std::error_code error = Error()) {
    return error;
  }
  // Some file systems tell only when the file is closed that there was no room.
  m_isFinished = m_file.Close() &&
                 (m_written == m_path || std::rename(m_written.c_str(), m_path.c_str()) == 0);
  return m_isFinished ? std::error_code() : LastError();
}
