// Whether a compiler sees the same program when markers are gone.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companion/safety/cut_trial.h"
#include "merge/file.h"

namespace companion {

/// A listed line that must stay as it is.
struct UnsafeLine {
  std::size_t index = 0;   ///< In the record's lines.
  std::uint32_t line = 0;  ///< 1-based.
  CutDanger danger = CutDanger::NoMarker;
};

/// The lines whose markers are not safe to take out of the source, which must be the one that was
/// analyzed; in their order. With the markers of all other lines gone, the C++ tokens of the source
/// are the same, comments aside.
[[nodiscard]] std::vector<UnsafeLine> UnsafeLines(std::vector<Line> const& lines,
                                                  std::string_view source);

/// The lines without those that `unsafe` names.
[[nodiscard]] std::vector<Line> SafeLines(std::vector<Line> const& lines,
                                          std::span<UnsafeLine const> unsafe);

/// What `unsafe` says of the line with this number.
[[nodiscard]] CutDanger DangerOf(std::span<UnsafeLine const> unsafe, std::uint32_t line);

/// FILE:LINE and why, in a line of words; `file` is its name.
[[nodiscard]] std::string ComplaintOf(UnsafeLine const& line, std::string_view file);

/// Why as people read it: "no marker stands there".
[[nodiscard]] std::string_view Words(CutDanger danger);

}  // namespace companion
