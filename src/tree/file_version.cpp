#include "tree/file_version.h"

#include <sys/stat.h>

namespace tree {

namespace {

std::int64_t Nanoseconds(timespec const& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileVersion VersionOf(struct stat const& status) {
  return {FileIdentity(status), status.st_size, Nanoseconds(status.st_mtim),
          Nanoseconds(status.st_ctim)};
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
