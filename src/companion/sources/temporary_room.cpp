#include "companion/sources/temporary_room.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <format>
#include <functional>
#include <numeric>
#include <string_view>

#include "cleaner/temporary_directory.h"
#include "cleaner/thread_pool.h"
#include "files/file_status.h"
#include "files/may_write.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Advice = "; give the run one of its own: TMPDIR=$(mktemp -d)";

/// How many bytes the largest sources need that are cleaned at once.
std::uint64_t NeededRoom(std::vector<std::uint64_t> sizes) {
  const std::size_t atOnce = std::min<std::size_t>(HardwareWorkers(), sizes.size());
  const auto end = sizes.begin() + static_cast<std::ptrdiff_t>(atOnce);
  std::ranges::nth_element(sizes, end, std::ranges::greater());
  return std::accumulate(sizes.begin(), end, std::uint64_t{0});
}

Complaint WrongWithRoom(fs::path const& directory, std::uint64_t needed) {
  struct statvfs room{};
  if (::statvfs(directory.c_str(), &room) != 0) {
    return std::nullopt;  // Not known, and so no obstacle.
  }
  const std::uint64_t available = std::uint64_t{room.f_bavail} * room.f_frsize;
  if (available >= needed) {
    return std::nullopt;
  }
  return std::format(
      "too little room in the temporary directory {}: the largest sources need {} bytes, and there "
      "are {}",
      directory.string(), needed, available);
}

}  // namespace

Complaint WrongWithTemporaryDirectory(std::vector<std::uint64_t> sizes) {
  fs::path directory;
  try {
    directory = faCleaner::GetTempDir();
  } catch (std::exception const& error) {
    return error.what();
  }
  const auto own = StatusAt(directory);
  if (own && own->st_uid != ::geteuid()) {
    return std::format("temporary directory of another account: {}{}", directory.string(), Advice);
  }
  if (!own) {
    directory = directory.parent_path();  // Where it will be made.
  }
  std::error_code ignored;
  if (!fs::is_directory(directory, ignored) || !MayWrite(directory)) {
    return std::format("temporary directory that may not be written: {}{}", directory.string(),
                       Advice);
  }
  return WrongWithRoom(directory, NeededRoom(std::move(sizes)));
}

}  // namespace companion
