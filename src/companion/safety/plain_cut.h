// Cuts that are safe at a glance.
#pragma once

#include <string_view>

#include "companion/safety/listed_lines.h"

namespace companion {

/// Whether a source can hold a raw string, by a quick look: most hold none.
[[nodiscard]] bool MayHoldRawString(std::string_view source);

/// Whether the line can be cleaned for certain, whatever stands in other lines of a source without
/// raw strings: by a look at it and at the end of the line before. What is not certain is false.
[[nodiscard]] bool IsPlainCut(ListedLine const& line, std::string_view source);

}  // namespace companion
