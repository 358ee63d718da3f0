#include "process_statics.h"

#include <gtest/gtest.h>

#include <array>

namespace {

// Taken while the statics are initialised, before a test changes the environment.
const std::string AtStart = GetTempDirectory();

TEST(ProcessStatics, TempDirectoryIsTheFirstVariableThatIsSetAtAll) {
  EXPECT_EQ(FileLock::BasePath, AtStart);
  const std::string own = GetTempDirectory();
  constexpr std::array names{"TMPDIR", "TMP", "TEMP", "TEMPDIR"};
  for (const char* name : names) {
    ::unsetenv(name);
  }
  EXPECT_EQ(GetTempDirectory(), "/tmp");
  const char* values[] = {"/no/such", "", "relative", "/d/"};
  for (std::size_t i = names.size(); i-- > 0;) {
    ::setenv(names[i], values[i], 1);
    EXPECT_EQ(GetTempDirectory(), values[i]) << names[i];
  }
  for (const char* name : names) {
    ::unsetenv(name);
  }
  ::setenv("TMPDIR", own.c_str(), 1);  // For the tests that follow.
}

}  // namespace
