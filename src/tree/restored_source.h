// The source as it was before a cleanup, from the cleaned one.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/file.h"

namespace tree {

/// Puts back into `cleaned` the markers of a record, where they stood. Nothing when they cannot
/// have stood there, or were written otherwise than //-V and the code. Whether this was the text
/// before, its hash tells.
[[nodiscard]] std::optional<std::string> Restored(std::string_view cleaned,
                                                  std::vector<Line> const& lines);

}  // namespace tree
