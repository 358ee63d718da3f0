// The source as it was before a cleanup, from the cleaned one.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/file.h"

namespace companion {

/// Puts back into `cleaned` the markers of a record, where they stood. Nothing when they cannot
/// have stood there. A marker is taken to be //-V and the code, with zeros between them where it
/// was longer; with other text in it the result is wrong. Whether it is the text before, its hash
/// tells.
[[nodiscard]] std::optional<std::string> Restored(std::string_view cleaned,
                                                  std::vector<Line> const& lines);

/// The same, but lines on which all markers still stand in their places are left as they are.
[[nodiscard]] std::optional<std::string> RestoredWhereGone(std::string_view cleaned,
                                                           std::vector<Line> const& lines);

}  // namespace companion
