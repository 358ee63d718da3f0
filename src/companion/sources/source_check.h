// Whether sources are what reports say, and can be cleaned.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "companion/reports/source_records.h"
#include "companion/safety/cut_safety.h"
#include "companion/sources/source_problem.h"

namespace companion {

/// One source that some report names.
struct CheckedSource {
  MaybeProblem problem{};            ///< None when it is the one that was analyzed.
  std::vector<UnsafeLine> unsafe{};  ///< Then, of the lines that are agreed, those to be left.
  std::uint64_t size = 0;            ///< In bytes; 0 when it cannot be read.
};

/// Of a source that could not be opened: there is none, or it may not be read.
[[nodiscard]] SourceProblem WhyNotOpen(std::filesystem::path const& source);

/// What is said of one with another content.
[[nodiscard]] std::string NotAsAnalyzed(std::filesystem::path const& source);

/// Looks at one source, of which `reports` have the records. Any thread may call it.
[[nodiscard]] CheckedSource CheckSource(Reports const& reports, SourceRecords const& records,
                                        std::filesystem::path const& root);

/// How many different markers of the codes that were asked for the records list.
[[nodiscard]] std::size_t CountDifferentMarkers(SourceRecords const& records,
                                                CodeFilter const& codes);

}  // namespace companion
