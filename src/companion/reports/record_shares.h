// Whether the records that a raw report has of one source differ.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "companion/reports/reports.h"
#include "companion/reports/votes.h"

namespace companion {

/// A report has a record of a header for each source that includes it, and lists only the lines
/// that are in all of them.
class RecordShares {
 public:
  /// Reads the records of `source` once more, and has the report list every line that is in some
  /// record, so that VotesOn shows it. Does nothing for a structured report, and for what cannot be
  /// read again, a pipe. Throws std::runtime_error when reading fails.
  RecordShares(Report& report, std::filesystem::path const& source,
               std::filesystem::path const& root);

  /// " in 1 of 2 records", where a line is not in all of them; else nothing.
  [[nodiscard]] std::string Share(Vote const& vote) const;

 private:
  struct Listed {
    Line line;
    std::size_t records = 0;
  };

  void Count(std::vector<Line> const& lines);

  std::size_t m_count = 0;
  std::multimap<std::uint32_t, Listed> m_lines;  ///< By their numbers.
};

}  // namespace companion
