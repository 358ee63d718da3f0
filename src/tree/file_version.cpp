#include "tree/file_version.h"

#include <sys/stat.h>

namespace tree {

namespace {

FileVersion VersionOf(struct stat const& status) {
  constexpr std::int64_t nanoseconds = 1'000'000'000;  // In a second.
  return {FileIdentity(status), status.st_size,
          status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

}  // namespace

std::optional<FileVersion> VersionOf(std::filesystem::path const& path) {
  struct stat status{};
  return ::stat(path.c_str(), &status) == 0 ? std::optional(VersionOf(status)) : std::nullopt;
}

std::optional<FileVersion> VersionOf(int descriptor) {
  struct stat status{};
  return ::fstat(descriptor, &status) == 0 ? std::optional(VersionOf(status)) : std::nullopt;
}

}  // namespace tree
