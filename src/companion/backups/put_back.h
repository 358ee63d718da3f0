// Putting a backup back into its source's place.
#pragma once

#include "companion/backups/backup_pair.h"
#include "companion/output/complaint.h"

namespace companion {

/// What is said where somebody was at work on a source that was to be kept or put back.
[[nodiscard]] std::string ChangedMeanwhile(BackupPair const& pair);

/// What is said where somebody has one of both open, to write into it.
[[nodiscard]] std::string OpenForWriting(BackupPair const& pair);

/// Puts the backup of a judged pair back, in whatever state but Changed and Refused it is, unless
/// somebody is at work on one of both: another run, an editor that has the source open for writing,
/// or whoever has changed or replaced one since the pair was opened. Immediately before the source
/// is replaced both are compared with what stands at their places, and what was replaced is looked
/// at again before its last name goes. Returns why it is not put back. Any thread may call it.
[[nodiscard]] Complaint PutBack(BackupPair const& pair);

}  // namespace companion
