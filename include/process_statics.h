// Values that exist once in the process, from before main until its exit.
#pragma once

#include <cstdlib>
#include <exception>
#include <string>

/// The value of the first of TMPDIR, TMP, TEMP and TEMPDIR that is set at all, as it stands and
/// even when it is empty; "/tmp" when none is set. The directory is not checked to exist.
[[nodiscard]] inline std::string GetTempDirectory() {
  for (const char* name : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
    if (const char* value = std::getenv(name)) {
      return value;
    }
  }
  return "/tmp";
}

/// Stands here because all of the analyzer's tools share this header. This tool sets BasePath
/// before main, as they all do, and never reads it: its own temporary directory is
/// faCleaner::GetTempDir().
class FileLock {
 public:
  inline static std::string BasePath = GetTempDirectory();
};

/// Stands here for the same reason; this tool never stores an exception in it.
class VAssertHandler {
 public:
  inline static std::exception_ptr CurrentExceptionPtr;
};
