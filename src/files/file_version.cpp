#include "files/file_version.h"

namespace {

std::int64_t Nanoseconds(timespec const& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileVersion::FileVersion(struct stat const& status)
    : file(status), size(status.st_size), written(Nanoseconds(status.st_mtim)) {}

std::optional<FileVersion> VersionOf(std::filesystem::path const& path) {
  struct stat status{};
  return ::stat(path.c_str(), &status) == 0 ? std::optional(FileVersion(status)) : std::nullopt;
}
