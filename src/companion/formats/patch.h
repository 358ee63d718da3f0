// A change of a file as a patch.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "cleaner/planned_cut.h"

namespace companion {

struct Patch {
  std::string text;              ///< In the unified format; empty when nothing changes.
  std::size_t changedLines = 0;  ///< Of the source before.
};

/// What `diff -u` prints of the source before and after, with the labels a/`name` and b/`name`. A
/// line ends with LF. The work grows with the source and what is dropped of it: nothing has to be
/// looked for.
[[nodiscard]] Patch MakePatch(std::string_view name, PlannedCut const& source);

}  // namespace companion
