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
  const std::pair<const char*, const char*> cases[] = {
      {"TEMPDIR", "/d/"}, {"TEMP", "relative"}, {"TMP", ""}, {"TMPDIR", "/no/such"}};
  for (auto const& [name, value] : cases) {
    ::setenv(name, value, 1);
    EXPECT_EQ(GetTempDirectory(), value) << name;
  }
  for (const char* name : names) {
    ::unsetenv(name);
  }
  ::setenv("TMPDIR", own.c_str(), 1);  // For the tests that follow.
}

}  // namespace
