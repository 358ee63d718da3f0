#include "cleaner/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "cleaner/temporary_directory.h"

namespace fs = std::filesystem;

namespace {

/// Whether the file that `path` leads to lies in `directory` or below it.
bool IsBelow(fs::path const& path, fs::path const& directory) {
  const fs::path inside = fs::canonical(path);
  const fs::path around = fs::canonical(directory);
  return std::ranges::mismatch(around, inside).in1 == around.end();
}

}  // namespace

TemporaryFile::TemporaryFile(fs::path const& sourcePath, SourceFile const& source,
                             WorkerLocks* workers) {
  // Whoever had the lock before us removes the file at its end. Then we have locked a file that is
  // gone, and begin again with the one that stands there now.
  do {
    m_lock.reset();
    OpenOrCreate(sourcePath.filename());
    if (::fstat(m_file.Get(), &m_status) != 0) {
      Refuse(errno);
    }
    // Before the wait: it might be the source, which we have locked, or a link to a source whose
    // worker waits for us.
    if (!S_ISREG(m_status.st_mode) || m_status.st_nlink > 1 ||
        FileIdentity(m_status) == source.Identity()) {
      RefuseForeignFile();
    }
    m_lock.emplace(workers, m_file, FileIdentity(m_status));
  } while (!IsStillAtPath());
  // A source within the directory of the temporary files means that someone's tree is there, and
  // that the file found may be one of its files.
  if (m_wasThere && IsBelow(sourcePath, m_path.parent_path())) {
    RefuseForeignFile();
  }
  m_mode = m_status.st_mode & 07777;
  Empty();
}

void TemporaryFile::OpenOrCreate(fs::path const& name) {
  // The directory is nearly always there already. If it is not, or is no directory, creating it has
  // to say so.
  m_path = faCleaner::GetUncheckedTempDir() / name;
  int error = Create();
  if (error == ENOENT || error == ENOTDIR) {
    const fs::path directory = faCleaner::GetTempDir();
    fs::create_directory(directory);
    m_path = directory / name;
    error = Create();
  }
  while (error == EEXIST) {
    error = Open();
    if (error == ENOENT) {  // What stood there is gone by now.
      error = Create();
    }
  }
  if (error != 0) {
    Refuse(error);
  }
}

int TemporaryFile::Create() {
  m_wasThere = false;
  return TakeOver(::open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
}

int TemporaryFile::Open() {
  m_wasThere = true;
  // Not blocking, so that a named pipe in the file's place is refused instead of waited for.
  return TakeOver(::open(m_path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
}

int TemporaryFile::TakeOver(int descriptor) {
  const int error = descriptor < 0 ? errno : 0;
  m_file = Descriptor(descriptor);
  return error;
}

void TemporaryFile::RefuseForeignFile() const {
  throw fs::filesystem_error("something else stands in the place of the temporary file", m_path,
                             std::make_error_code(std::errc::file_exists));
}

bool TemporaryFile::IsStillAtPath() const noexcept {
  struct stat standing{};
  if (::lstat(m_path.c_str(), &standing) != 0) {
    return errno != ENOENT;
  }
  return FileIdentity(standing) == FileIdentity(m_status);
}

void TemporaryFile::Empty() {
  if (m_wasThere && ::ftruncate(m_file.Get(), 0) != 0) {
    Refuse(errno);
  }
}

void TemporaryFile::Refuse(int error) const {
  throw fs::filesystem_error("cannot write the temporary file", m_path,
                             std::error_code(error, std::system_category()));
}

void TemporaryFile::Keep(std::span<char const> bytes) noexcept {
  if (!m_writeError) {
    m_writeError = m_file.Write(bytes).error;
  }
}

void TemporaryFile::Remove() {
  if (::unlink(m_path.c_str()) != 0) {
    fs::remove(m_path);  // Fails, too, in the library's words.
  }
}
