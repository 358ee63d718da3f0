#include "companion/sources/obstacles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "cleaner/backup_name.h"
#include "companion/reports/reports.h"
#include "files/file_identity.h"
#include "files/file_status.h"
#include "files/may_write.h"
#include "merge/paths/weakly_canonical.h"

namespace companion {

namespace {

namespace fs = std::filesystem;

bool IsLink(fs::path const& path) {
  const auto status = StatusAt(path);
  return status && S_ISLNK(status->st_mode);
}

/// What keeps a source from being renamed, before its name; empty when nothing does. A source that
/// is not there is told elsewhere.
std::string_view WrongWithRenaming(fs::path const& source) {
#ifdef STATX_ATTR_MOUNT_ROOT
  struct statx known{};
  if (::statx(AT_FDCWD, source.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &known) == 0) {
    if ((known.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0) {
      return "source that is immutable, or may only grow: ";
    }
    if ((known.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
      return "source that is mounted by itself: ";
    }
  }
#endif
  const auto status = StatusAt(source);
  const auto folder = StatusAt(source.parent_path());
  const uid_t self = ::geteuid();
  const bool isHeld = status && folder && (folder->st_mode & S_ISVTX) != 0 && self != 0 &&
                      status->st_uid != self && folder->st_uid != self;
  return isHeld ? "source of another owner, in a sticky folder: " : "";
}

/// What is wrong with the place of the source's backup, before the source's name; empty when
/// nothing is. A backup in it is the only original of a source that was cleaned, and not to be
/// replaced.
std::string_view WrongWithBackupOf(fs::path const& source, bool hasChanged) {
  const auto there = StatusAt(BackupOf(source));
  if (!there) {
    return errno == ENAMETOOLONG ? "name too long for a backup's: " : "";
  }
  const auto own = StatusAt(source);
  if (!S_ISREG(there->st_mode) || (own && FileIdentity(*own) == FileIdentity(*there))) {
    return "the place of the backup is taken, of: ";
  }
  return hasChanged ? "" : "a backup is there, keep or undo first: ";
}

MaybeProblem Other(std::string_view wrong, fs::path const& source) {
  return SourceProblem{SourceProblem::Kind::Other, std::string(wrong) + source.string()};
}

}  // namespace

Obstacles::Obstacles(fs::path root, Files const& agreed)
    : m_agreed(agreed), m_root(std::move(root)), m_canonicalRoot(WeaklyCanonical(m_root)) {}

MaybeProblem Obstacles::InTheWayOf(File const& file, bool hasChanged) {
  const fs::path source = m_root / file.path;
  Folder const& folder = Look(source.parent_path());
  if (folder.isOutside || (IsLink(source) && IsOutside(WeaklyCanonical(source)))) {
    return Other("source outside the root: ", source);
  }
  if (IsLink(source)) {
    return Other("source that is a link, and would become a file: ", source);
  }
  if (!m_named.insert((folder.canonical / source.filename()).native()).second) {
    return Other("source that another record names in another spelling: ", source);
  }
  if (const std::string_view wrong = WrongWithRenaming(source); !wrong.empty()) {
    return SourceProblem{SourceProblem::Kind::Forbidden, std::string(wrong) + source.string()};
  }
  if (const std::string_view wrong = WrongWithBackupOf(source, hasChanged); !wrong.empty()) {
    return Other(wrong, source);
  }
  if (IsBackupOfAnother(file)) {
    return Other("source with the name of another one's backup: ", source);
  }
  if (folder.isReadOnly) {
    return SourceProblem{SourceProblem::Kind::Forbidden,
                         "source in a folder that may not be written: " + source.string()};
  }
  return std::nullopt;
}

Obstacles::Folder& Obstacles::Look(fs::path const& folder) {
  const auto [found, isNew] = m_folders.try_emplace(folder.native());
  if (isNew) {
    fs::path canonical = WeaklyCanonical(folder);
    const bool isOutside = IsOutside(canonical);
    found->second = {std::move(canonical), isOutside, !MayWrite(folder)};
  }
  return found->second;
}

bool Obstacles::IsBackupOfAnother(File const& file) const {
  const auto source = SourceOf(file.path);
  return source && FindFile(m_agreed, *source) != nullptr;
}

bool Obstacles::IsOutside(fs::path const& canonical) const {
  return std::ranges::mismatch(m_canonicalRoot, canonical).in1 != m_canonicalRoot.end();
}

}  // namespace companion
