// The numbers of the standard streams.
#pragma once

#include <fcntl.h>
#include <unistd.h>

/// Opens something that takes no bytes in the place of each standard stream that is closed. Without
/// this the next file to be opened, maybe somebody's source, would have the number of the standard
/// error stream, and get every line that is printed there. Writing to the stream then fails as it
/// would to a closed one. To be called in `main` before any file is opened.
inline void OccupyStandardDescriptors() noexcept {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    // The lowest free number is given, which is this one, since those below it are taken.
    if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/", O_RDONLY) < 0) {
      return;
    }
  }
}
