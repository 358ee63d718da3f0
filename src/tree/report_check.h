// Whether reports are what a cleanup can rely on.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "tree/console.h"
#include "tree/reports.h"

namespace tree {

struct CheckedReports {
  Reports reports;  ///< Of the reports that can be read; without what is agreed if not all can.
  bool areWhole = true;  ///< And so agree as they will for a cleanup.
};

/// Reads the reports as ReadReports does, but goes on to the next where one cannot be relied on,
/// with a complaint: it is not there, may not be read, is empty or no regular file, cannot be
/// parsed, or breaks off within a record.
[[nodiscard]] CheckedReports CheckReports(std::vector<std::filesystem::path> const& paths,
                                          std::filesystem::path const& root, Console& console);

}  // namespace tree
