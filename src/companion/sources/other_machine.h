// Whether reports were made on a machine with other paths.
#pragma once

#include <filesystem>
#include <vector>

#include "companion/output/complaint.h"
#include "companion/reports/source_records.h"

namespace companion {

/// Of sources that are not there, and whose paths are neither below the root nor below the current
/// folder: how many they are, what their paths have in common, and what to do. `sources` are all
/// that the reports name.
[[nodiscard]] Complaint HintOfOtherMachine(std::vector<SourceRecords> const& sources,
                                           std::filesystem::path const& root);

}  // namespace companion
