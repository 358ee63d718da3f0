#include "tree/obstacles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <format>
#include <functional>
#include <numeric>
#include <string_view>
#include <thread>
#include <utility>

#include "cleaner/fa_cleaner.h"
#include "cleaner/file_identity.h"
#include "cleaner/marks_filter.h"
#include "merge/paths/weakly_canonical.h"
#include "tree/reports.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

/// A folder that is not there has no permissions; that its sources are missing is said elsewhere.
bool MayWrite(fs::path const& folder) {
  return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0 || errno == ENOENT;
}

bool IsLink(fs::path const& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

/// What is wrong with the place of the source's backup, before the source's name; empty when it is
/// free, or holds the backup of an earlier cleanup.
std::string_view WrongWithBackupOf(fs::path const& source) {
  fs::path backup = source;
  backup += MarksFilter::TempName;
  struct stat there{};
  if (::lstat(backup.c_str(), &there) != 0) {
    return errno == ENAMETOOLONG ? "name too long for a backup's: " : "";
  }
  struct stat own{};
  const bool isSource =
      ::lstat(source.c_str(), &own) == 0 && FileIdentity(own) == FileIdentity(there);
  return isSource || !S_ISREG(there.st_mode) ? "the place of the backup is taken, of: " : "";
}

}  // namespace

Obstacles::Obstacles(fs::path root, Files const& agreed)
    : m_agreed(agreed), m_root(std::move(root)), m_canonicalRoot(WeaklyCanonical(m_root)) {}

std::string Obstacles::InTheWayOf(File const& file) {
  const fs::path source = m_root / file.path;
  Folder& folder = Look(source.parent_path());
  if (folder.isOutside || (IsLink(source) && IsOutside(source))) {
    return "source outside the root: " + source.string();
  }
  if (IsLink(source)) {
    return "source that is a link, and would become a file: " + source.string();
  }
  if (const std::string_view wrong = WrongWithBackupOf(source); !wrong.empty()) {
    return std::string(wrong) + source.string();
  }
  if (IsBackupOfAnother(file)) {
    return "source with the name of another one's backup: " + source.string();
  }
  if (std::exchange(folder.isReadOnly, false)) {
    return "folder that may not be written: " + source.parent_path().string();
  }
  return {};
}

Obstacles::Folder& Obstacles::Look(fs::path const& folder) {
  const auto [found, isNew] = m_folders.try_emplace(folder.native());
  if (isNew) {
    found->second = {IsOutside(folder), !MayWrite(folder)};
  }
  return found->second;
}

bool Obstacles::IsBackupOfAnother(File const& file) const {
  const std::string_view name = file.path.native();
  return name.ends_with(MarksFilter::TempName) &&
         FindFile(m_agreed, name.substr(0, name.size() - MarksFilter::TempName.size())) != nullptr;
}

bool Obstacles::IsOutside(fs::path const& path) const {
  const fs::path canonical = WeaklyCanonical(path);
  return std::ranges::mismatch(m_canonicalRoot, canonical).in1 != m_canonicalRoot.end();
}

std::string WrongWithTemporaryDirectory(std::vector<std::uint64_t> sizes) {
  fs::path directory;
  try {
    directory = faCleaner::GetTempDir();
  } catch (std::exception const& error) {
    return error.what();
  }
  std::error_code ignored;
  if (!fs::exists(directory, ignored)) {
    directory = directory.parent_path();  // Where it will be made.
  }
  if (!fs::is_directory(directory, ignored) || !MayWrite(directory)) {
    return "temporary directory that may not be written: " + directory.string();
  }
  const std::size_t workers = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t atOnce = std::min(workers, sizes.size());
  std::ranges::nth_element(sizes, sizes.begin() + static_cast<std::ptrdiff_t>(atOnce),
                           std::ranges::greater());
  const std::uint64_t needed = std::accumulate(
      sizes.begin(), sizes.begin() + static_cast<std::ptrdiff_t>(atOnce), std::uint64_t{0});
  struct statvfs room{};
  if (::statvfs(directory.c_str(), &room) != 0) {
    return {};  // Not known, and so no obstacle.
  }
  const std::uint64_t available = std::uint64_t{room.f_bavail} * room.f_frsize;
  return available >= needed
             ? std::string()
             : std::format(
                   "too little room in the temporary directory {}: the largest sources "
                   "need {} bytes, and there are {}",
                   directory.string(), needed, available);
}

}  // namespace tree
