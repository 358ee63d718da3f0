#include "tree/put_back.h"

#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "cleaner/file_version.h"
#include "cleaner/rename_to_free.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

/// Not waited for: whoever has the turn of one file and waits for that of another could wait for
/// ever. Where the file system has no locks, nobody is taken to be at work.
bool IsAtWorkOn(SourceFile const& source) {
  return ::flock(source.Handle(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

std::string CannotUndo(Backup const& backup, std::error_code const& reason) {
  return "cannot undo: " + backup.source.string() + ": " + reason.message();
}

std::string WhyFailed(Backup const& backup, bool isDone) {
  return isDone ? std::string() : CannotUndo(backup, {errno, std::system_category()});
}

std::string PutWhereNothingIs(Backup const& backup) {
  try {
    return MoveToFree(backup.backup, backup.source) ? std::string() : ChangedMeanwhile(backup);
  } catch (fs::filesystem_error const& error) {
    return CannotUndo(backup, error.code());
  }
}

}  // namespace

std::string ChangedMeanwhile(Backup const& backup) {
  return "source has changed while it was looked at: " + backup.source.string();
}

std::string PutBack(Backup const& backup, SourceFile const& source, SourceFile const& backupFile) {
  if (VersionOf(backup.backup) != backupFile.Version()) {
    return ChangedMeanwhile(backup);
  }
  if (!source.IsOpen()) {
    return PutWhereNothingIs(backup);
  }
  const bool isOneFile = source.Identity() == backupFile.Identity();
  if ((!isOneFile && IsAtWorkOn(source)) || VersionOf(backup.source) != source.Version()) {
    return ChangedMeanwhile(backup);
  }
  if (isOneFile) {
    // A rename would leave both of its names.
    return WhyFailed(backup, ::unlink(backup.backup.c_str()) == 0);
  }
  return WhyFailed(backup, std::rename(backup.backup.c_str(), backup.source.c_str()) == 0);
}

}  // namespace tree
