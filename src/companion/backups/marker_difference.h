// What differs between a source and its backup.
#pragma once

#include <cstdint>

#include "files/source_file.h"

namespace companion {

enum class MarkerDifference : std::uint8_t {
  OnlyMarkers,  ///< The source is the backup less some markers: all it holds is in the backup, too.
  OnlyMarkersSoFar,  ///< It is a beginning of such a text, as an interruption or a full disk leaves
                     ///< it.
  MoreThanMarkers,   ///< Anything else.
  Unknown,           ///< One of them could not be read to its end.
};

/// Compares both line by line; line_difference.h says what is a marker. Both must be open, and are
/// read from the front, once.
[[nodiscard]] MarkerDifference DifferenceOf(SourceFile& source, SourceFile& backup);

}  // namespace companion
