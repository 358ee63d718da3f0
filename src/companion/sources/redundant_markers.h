// Where in a source the markers stand that go.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "companion/safety/cut_safety.h"
#include "merge/file.h"

namespace companion {

/// One marker. Characters are UTF-16 code units, of a byte that belongs to no UTF-8 character one.
struct RedundantMarker {
  std::uint64_t code = 0;
  std::uint32_t line = 0;              ///< 1-based, as are the next two.
  std::uint64_t byteColumn = 0;        ///< In bytes.
  std::uint64_t column = 0;            ///< In characters.
  std::uint64_t offset = 0;            ///< In characters from the front, its mark left out.
  std::uint64_t length = 0;            ///< In characters.
  CutDanger danger = CutDanger::None;  ///< Of taking its line's markers out.
};

struct RedundantMarkers {
  std::vector<RedundantMarker> markers;
  std::vector<std::string> complaints;  ///< Of the source, or of lines on which no marker stands.
};

/// The markers that `agreed` lists, if the source is the one that was analyzed. Any thread may call
/// it.
[[nodiscard]] RedundantMarkers FindRedundantMarkers(File const& agreed,
                                                    std::filesystem::path const& root);

}  // namespace companion
