// Whether sources are what reports say, and can be cleaned.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tree/reports.h"

namespace tree {

/// One source that some report names.
struct CheckedSource {
  std::string complaint;        ///< Empty when it is the one that was analyzed.
  std::uint64_t size = 0;       ///< In bytes; 0 when it cannot be read.
  std::size_t markers = 0;      ///< How many different ones the reports list.
  std::vector<bool> isNamedBy;  ///< By report.
};

/// Looks at one source; `path` is as the reports have it. Any thread may call it.
[[nodiscard]] CheckedSource CheckSource(Reports const& reports, std::filesystem::path const& path,
                                        std::filesystem::path const& root);

/// The SHA-1 of a file's content; empty when it cannot be read.
[[nodiscard]] std::string HashOf(std::filesystem::path const& path);

}  // namespace tree
