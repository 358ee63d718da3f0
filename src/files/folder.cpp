#include "files/folder.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#if __has_include(<linux/openat2.h>)
#include <linux/openat2.h>
#endif

#include "files/last_error.h"

namespace {

namespace fs = std::filesystem;

constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// One folder after the other; for systems that cannot do it at once.
Descriptor OpenByParts(Descriptor const& from, fs::path const& relative) {
  Descriptor folder(::openat(from.Get(), ".", FolderFlags));
  for (fs::path const& part : relative) {
    if (part == ".." || part.is_absolute()) {
      errno = EXDEV;
      return {};
    }
    folder = Descriptor(
        ::openat(folder.Get(), part.empty() ? "." : part.c_str(), FolderFlags | O_NOFOLLOW));
    if (!folder.IsOpen()) {
      return {};
    }
  }
  return folder;
}

Descriptor OpenBelow(Descriptor const& from, fs::path const& relative) {
#if defined(SYS_openat2) && defined(RESOLVE_BENEATH)
  struct open_how how{};
  how.flags = FolderFlags;
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
  Descriptor folder(static_cast<int>(::syscall(
      SYS_openat2, from.Get(), relative.empty() ? "." : relative.c_str(), &how, sizeof how)));
  if (folder.IsOpen() || (errno != ENOSYS && errno != EAGAIN && errno != EPERM)) {
    return folder;
  }
#endif
  return OpenByParts(from, relative);
}

std::error_code ErrorUnless(bool isDone) {
  return isDone ? std::error_code() : LastError();
}

}  // namespace

Folder::Folder(fs::path const& path) : m_folder(::open(path.c_str(), FolderFlags)) {}

Folder Folder::Below(fs::path const& relative) const {
  return Folder(OpenBelow(m_folder, relative));
}

std::optional<struct stat> Folder::StatusOf(fs::path const& name) const {
  struct stat status{};
  const bool isKnown = ::fstatat(m_folder.Get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
  return isKnown ? std::optional(status) : std::nullopt;
}

std::optional<FileVersion> Folder::VersionOf(fs::path const& name) const {
  const auto status = StatusOf(name);
  return status ? std::optional(FileVersion(*status)) : std::nullopt;
}

std::error_code Folder::Exchange([[maybe_unused]] fs::path const& one,
                                 [[maybe_unused]] fs::path const& other) const {
#ifdef RENAME_EXCHANGE
  return ErrorUnless(::renameat2(m_folder.Get(), one.c_str(), m_folder.Get(), other.c_str(),
                                 RENAME_EXCHANGE) == 0);
#else
  return std::make_error_code(std::errc::invalid_argument);
#endif
}

std::error_code Folder::Rename(fs::path const& from, fs::path const& to) const {
  return ErrorUnless(::renameat(m_folder.Get(), from.c_str(), m_folder.Get(), to.c_str()) == 0);
}

std::error_code Folder::Unlink(fs::path const& name) const {
  return ErrorUnless(::unlinkat(m_folder.Get(), name.c_str(), 0) == 0);
}
