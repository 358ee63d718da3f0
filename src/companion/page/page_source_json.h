// What the page shows of sources, as JSON.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "companion/page/numbered_values.h"
#include "companion/page/page_source.h"
#include "companion/reports/reports.h"

namespace companion {

/// Makes the JSON of one source after the other, and then of what their markers have in common and
/// refer to by number.
class PageSourceJson {
 public:
  /// `inTheWay` are the words for what keeps it from being cleaned, if it is as analyzed.
  /// [PATH, STATE, [LINE, COUNT, VOTES, (BEGIN, END, CODE) ..., ...], [FIRST, TEXT, ...]]
  [[nodiscard]] std::string Of(std::filesystem::path const& path, PageSource const& source,
                               std::string_view inTheWay, Reports const& reports);

  /// ["V501", ...]
  [[nodiscard]] std::string Codes() const;

  /// An array of what LineVotesText gives.
  [[nodiscard]] std::string Votes() const;

 private:
  void AppendLines(std::string& json, PageSource const& source, Reports const& reports);

  NumberedValues<std::uint64_t> m_codes;
  NumberedValues<std::string> m_votes;
};

}  // namespace companion
