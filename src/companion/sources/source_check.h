// Whether sources are what reports say, and can be cleaned.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "companion/output/complaint.h"
#include "companion/reports/reports.h"
#include "companion/safety/cut_safety.h"

namespace companion {

/// One source that some report names.
struct CheckedSource {
  Complaint complaint;             ///< None when it is the one that was analyzed.
  std::vector<UnsafeLine> unsafe;  ///< Then, of the lines that are agreed, those to be left.
  std::uint64_t size = 0;          ///< In bytes; 0 when it cannot be read.
  std::size_t markers = 0;         ///< How many different ones the reports list.
  std::vector<bool> isNamedBy;     ///< By report.
};

/// Looks at one source; `path` is as the reports have it. Any thread may call it.
[[nodiscard]] CheckedSource CheckSource(Reports const& reports, std::filesystem::path const& path,
                                        std::filesystem::path const& root);

}  // namespace companion
