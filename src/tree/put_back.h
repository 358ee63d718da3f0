// Putting a backup back into its source's place.
#pragma once

#include <string>

#include "cleaner/source_file.h"
#include "tree/backups.h"

namespace tree {

/// Why a file was left: somebody was at work on it.
[[nodiscard]] std::string ChangedMeanwhile(Backup const& backup);

/// Puts the backup back if both files are still as they were when they were opened, before they
/// were judged; `source` is not open where the source was gone. Looks a last time with nothing in
/// between, and leaves a source that a cleanup is just working on. Returns why not; empty when it
/// is done. The caller holds the FileTurn of the backup, for which a cleanup at work has it. Any
/// thread may call it.
[[nodiscard]] std::string PutBack(Backup const& backup, SourceFile const& source,
                                  SourceFile const& backupFile);

}  // namespace tree
