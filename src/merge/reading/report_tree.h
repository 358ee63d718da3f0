// Reading the JSON of reports into a tree.
#pragma once

#include <istream>
#include <nlohmann/json.hpp>

/// The tree of a report or of a file record, as far as from_json looks at it: what stands under an
/// unknown key is checked and left out, and so is nesting deeper than a report's. A text that is no
/// JSON, or no object, is null, which from_json refuses. The tree so grows with the markers, and
/// not with whatever else a report may hold.
[[nodiscard]] nlohmann::json ReadReportTree(std::istream& text);
