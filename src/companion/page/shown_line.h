// A line of a source as the page shows it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "merge/file.h"

namespace companion {

struct ShownLine {
  /// The line or, of a long one, what stands around its markers; how much is left out between is
  /// said there.
  std::string text;
  /// For each marker where it stands in the text, counted as ShownLength does; an empty range for
  /// one that is left out.
  std::vector<Range> places;
};

/// `markers` may be in any order, and their ranges anywhere.
[[nodiscard]] ShownLine ShowLine(std::string_view line, std::span<Marker const> markers);

}  // namespace companion
