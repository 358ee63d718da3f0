#include "tree/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <format>
#include <system_error>
#include <utility>

namespace tree {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t BufferSize = std::size_t{64} * 1024;

/// With a number that no other run has at the time, so that two do not write into one file.
fs::path WrittenPath(fs::path const& path) {
  std::error_code error;
  const fs::file_type type = fs::symlink_status(path, error).type();
  const bool isReplaced = type == fs::file_type::not_found || type == fs::file_type::regular;
  return isReplaced ? fs::path(std::format("{}.part{}", path.native(), ::getpid())) : path;
}

int Open(fs::path const& written, fs::path const& path) {
  if (written == path) {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  }
  const int descriptor = ::open(written.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  struct stat older{};
  if (descriptor >= 0 && ::stat(path.c_str(), &older) == 0) {
    ::fchmod(descriptor, older.st_mode & 0777);  // Whoever may not read it, still may not.
  }
  return descriptor;
}

}  // namespace

OutputFile::OutputFile(fs::path path)
    : m_path(std::move(path)),
      m_written(WrittenPath(m_path)),
      m_descriptor(Open(m_written, m_path)) {
  if (m_descriptor < 0) {
    Fail();
  }
}

OutputFile::~OutputFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
  if (!m_isFinished && m_written != m_path) {
    ::unlink(m_written.c_str());
  }
}

void OutputFile::Write(std::string_view bytes) {
  m_buffer += bytes;
  if (m_buffer.size() >= BufferSize) {
    WriteOut(m_buffer);
    m_buffer.clear();
  }
}

void OutputFile::Finish() {
  WriteOut(m_buffer);
  m_buffer.clear();
  // Some file systems tell only now that there was no room.
  if (::close(std::exchange(m_descriptor, -1)) != 0) {
    Fail();
  }
  if (m_written != m_path && std::rename(m_written.c_str(), m_path.c_str()) != 0) {
    Fail();
  }
  m_isFinished = true;
}

void OutputFile::Fail() const {
  throw std::system_error(errno, std::system_category(), "cannot write " + m_path.string());
}

void OutputFile::WriteOut(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      Fail();
    }
  }
}

}  // namespace tree
