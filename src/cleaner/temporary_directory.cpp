#include "cleaner/temporary_directory.h"

#include <string>
#include <string_view>

#include "process_statics.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view TempDirName = "qln_fp_cleaner";

}  // namespace

fs::path faCleaner::GetTempDir() {
  return fs::temp_directory_path() / TempDirName;
}

fs::path faCleaner::GetUncheckedTempDir() {
  const std::string directory = GetTempDirectory();
  return directory.empty() ? GetTempDir() : fs::path(directory) / TempDirName;
}
