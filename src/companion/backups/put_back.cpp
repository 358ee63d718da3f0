#include "companion/backups/put_back.h"

#include <mutex>
#include <string>
#include <system_error>

#include "files/exclusive_lock.h"
#include "files/rename_no_replace.h"
#include "files/write_guard.h"

namespace companion {

namespace {

Complaint CannotUndo(BackupPair const& pair, std::error_code error) {
  return error ? Complaint("cannot undo: " + pair.Name() + ": " + error.message()) : std::nullopt;
}

const std::error_code SomebodyWasAtWork =
    std::make_error_code(std::errc::resource_unavailable_try_again);

bool IsShared(WriteGuard const& guard) {
  return guard.Look() == WriteGuard::State::Shared;
}

Complaint PutWhereNothingIs(BackupPair const& pair) {
  Folder const& folder = pair.Place();
  if (folder.VersionOf(pair.BackupName()) != pair.BackupFile().Version()) {
    return ChangedMeanwhile(pair);
  }
  const std::error_code error =
      MoveNoReplace(pair.BackupName(), pair.SourceName(), folder.Handle().Get());
  return error == std::errc::file_exists ? ChangedMeanwhile(pair) : CannotUndo(pair, error);
}

/// Where the file system cannot exchange, the source is replaced at once.
bool CannotExchange(std::error_code error) {
  return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
         error == std::errc::operation_not_supported;
}

/// Both names change places. What stood in the source's place then stands in the backup's, and
/// nothing has lost its name yet when somebody turns out to have been at work on it. `guard` is of
/// the source.
Complaint Replace(BackupPair const& pair, WriteGuard const& guard) {
  Folder const& folder = pair.Place();
  const auto exchange = [&] { return folder.Exchange(pair.BackupName(), pair.SourceName()); };
  if (const std::error_code error = exchange()) {
    return CannotUndo(
        pair, CannotExchange(error) ? folder.Rename(pair.BackupName(), pair.SourceName()) : error);
  }
  const bool isAsItWas = folder.VersionOf(pair.BackupName()) == pair.Source().Version();
  const std::error_code error =
      isAsItWas && !IsShared(guard) ? folder.Unlink(pair.BackupName()) : SomebodyWasAtWork;
  // Back again, unless somebody has saved another text over the one that was put back.
  if (error && folder.VersionOf(pair.SourceName()) == pair.BackupFile().Version()) {
    if (const std::error_code stays = exchange()) {
      return CannotUndo(pair, stays);
    }
  }
  return error == SomebodyWasAtWork ? ChangedMeanwhile(pair) : CannotUndo(pair, error);
}

}  // namespace

std::string ChangedMeanwhile(BackupPair const& pair) {
  return "source has changed while it was looked at: " + pair.Name();
}

std::string OpenForWriting(BackupPair const& pair) {
  return "somebody has it, or its backup, open for writing: " + pair.Name();
}

Complaint PutBack(BackupPair const& pair) {
  if (pair.WhatIs() == BackupPair::State::Refused || pair.WhatIs() == BackupPair::State::Changed) {
    return pair.WhyNotCleaned();
  }
  if (pair.WhatIs() == BackupPair::State::Gone) {
    return PutWhereNothingIs(pair);
  }
  const bool isOneFile = pair.Source().Identity() == pair.BackupFile().Identity();
  const bool losesBackup = isOneFile || pair.WhatIs() == BackupPair::State::HalfPutBack;
  // Not waited for: whoever has one lock and waits for another could wait for ever.
  std::optional<ExclusiveLock> lock;
  if (!isOneFile && !lock.emplace(std::try_to_lock, pair.Source().Handle()).IsHeld()) {
    return ChangedMeanwhile(pair);
  }
  const WriteGuard guard(losesBackup ? pair.BackupFile().Handle() : pair.Source().Handle());
  if (IsShared(guard) && !isOneFile) {
    return OpenForWriting(pair);
  }
  if (!pair.StandsUnchanged()) {
    return ChangedMeanwhile(pair);
  }
  // Of one file a rename would leave both names, and of a half one the original is in place.
  return losesBackup ? CannotUndo(pair, pair.Place().Unlink(pair.BackupName()))
                     : Replace(pair, guard);
}

}  // namespace companion
