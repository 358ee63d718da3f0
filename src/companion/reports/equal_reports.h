// Reports of one content.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "companion/reports/reports.h"

namespace companion {

/// The reports that say the same as one before them, each with the first such, by their places.
/// They may be of configurations that agree, or one may have been copied.
[[nodiscard]] std::vector<std::pair<std::size_t, std::size_t>> EqualReports(Reports const& reports);

}  // namespace companion
