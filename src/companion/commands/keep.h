// Keeping what cleanups made.
#pragma once

#include <filesystem>
#include <map>

#include "companion/backups/backup_pair.h"
#include "companion/commands/options.h"
#include "companion/output/console.h"

namespace companion {

/// Of sources that were just compared with their backups and found cleaned, by their paths relative
/// to the root.
using ComparedPairs = std::map<std::filesystem::path, PairVersions>;

/// Does what Keep does with the options; pairs of `compared` are read again only if they have
/// changed.
void KeepCleaned(Options const& options, ComparedPairs const& compared, Console& console);

}  // namespace companion
