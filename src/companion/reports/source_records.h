// What reports say, by source.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "companion/reports/reports.h"

namespace companion {

/// One source, and all records of it. Both belong to the reports.
struct SourceRecords {
  std::filesystem::path const* path;                     ///< Relative to the root.
  std::vector<std::pair<std::size_t, File const*>> all;  ///< By report, ascending.
};

/// What is said of a source that some report does not name.
[[nodiscard]] inline std::string NotNamedByEvery(std::string const& source) {
  return "not named by every report: " + source;
}

/// Every source that some report names, in the order of files. Takes time and memory that grow
/// with what the reports hold, not with sources times reports.
[[nodiscard]] std::vector<SourceRecords> RecordsBySource(Reports const& reports);

}  // namespace companion
