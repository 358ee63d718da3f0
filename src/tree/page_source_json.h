// What the page shows of sources, as JSON.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "tree/numbered_values.h"
#include "tree/page_source.h"
#include "tree/reports.h"

namespace tree {

/// Makes the JSON of one source after the other, and then of what their markers have in common and
/// refer to by number.
class PageSourceJson {
 public:
  /// [PATH, STATE, [LINE, COUNT, (BEGIN, END, CODE, VOTES) ..., ...], [FIRST, TEXT, ...]]
  [[nodiscard]] std::string Of(std::filesystem::path const& path, PageSource const& source,
                               Reports const& reports);

  /// ["V501", ...]
  [[nodiscard]] std::string Codes() const;

  /// An array of what MarkerVotes gives.
  [[nodiscard]] std::string Votes() const;

 private:
  void AppendLines(std::string& json, PageSource const& source, Reports const& reports);

  NumberedValues<std::uint64_t> m_codes;
  NumberedValues<std::string> m_votes;
};

}  // namespace tree
