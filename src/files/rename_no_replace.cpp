#include "files/rename_no_replace.h"

#include <sys/stat.h>

#include <cstdio>

#include "files/last_error.h"

namespace fs = std::filesystem;

std::error_code RenameNoReplace([[maybe_unused]] fs::path const& from,
                                [[maybe_unused]] fs::path const& to,
                                [[maybe_unused]] int folder) noexcept {
#ifdef RENAME_NOREPLACE
  const bool isDone = ::renameat2(folder, from.c_str(), folder, to.c_str(), RENAME_NOREPLACE) == 0;
  return isDone ? std::error_code() : LastError();
#else
  return std::make_error_code(std::errc::invalid_argument);
#endif
}

std::error_code MoveNoReplace(fs::path const& from, fs::path const& to, int folder) noexcept {
  const std::error_code error = RenameNoReplace(from, to, folder);
  if (!error || error == std::errc::file_exists) {
    return error;
  }
  struct stat there{};
  if (::fstatat(folder, to.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0) {
    return std::make_error_code(std::errc::file_exists);
  }
  return ::renameat(folder, from.c_str(), folder, to.c_str()) == 0 ? std::error_code()
                                                                   : LastError();
}
