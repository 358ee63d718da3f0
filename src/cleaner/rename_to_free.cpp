#include "cleaner/rename_to_free.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace fs = std::filesystem;

bool RenameToFree(fs::path const& from, fs::path const& to) {
#ifdef RENAME_NOREPLACE
  return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
#else
  errno = EINVAL;
  return false;
#endif
}

bool MoveToFree(fs::path const& from, fs::path const& to) {
  if (RenameToFree(from, to)) {
    return true;
  }
  std::error_code ignored;
  if (errno == EEXIST || fs::exists(fs::symlink_status(to, ignored))) {
    return false;
  }
  fs::rename(from, to);
  return true;
}
