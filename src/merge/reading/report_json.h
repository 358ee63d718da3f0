// Reading the JSON of reports into a tree.
#pragma once

#include <istream>
#include <nlohmann/json.hpp>

/// The tree of a report or of a file record, as far as from_json looks at it. What stands under an
/// unknown key, or is nested deeper than anything in a report, is checked by the parser and left
/// out, so that the tree grows with the markers and not with whatever else a text may hold. A text
/// that is no JSON, or no object, gives null, which from_json refuses. The parser takes a byte of 0
/// for the end of the text.
[[nodiscard]] nlohmann::json ParseReportJson(std::istream& text);
