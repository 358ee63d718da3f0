// The order of files in a report.
#pragma once

#include <filesystem>

/// left.compare(right), many times faster: the standard function takes both paths apart for every
/// comparison, this looks at their text where it first differs.
[[nodiscard]] int ComparePaths(std::filesystem::path const& left,
                               std::filesystem::path const& right);
