// Whether a folder may be written.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

/// Whether this process may make and rename files in the folder. A folder that is not there has no
/// permissions, and so none that are lacking.
[[nodiscard]] inline bool MayWrite(std::filesystem::path const& folder) {
  return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0 || errno == ENOENT;
}
