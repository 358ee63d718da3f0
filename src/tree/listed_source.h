// The lines of a source that reports speak of.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "tree/line_picker.h"
#include "tree/reports.h"

namespace tree {

/// What a cleanup would make of the source as it is now: it cleans what is as it was analyzed.
enum class SourceCondition : std::uint8_t { AsAnalyzed, Missing, Changed, Unreadable };

struct ListedSource {
  SourceCondition condition = SourceCondition::AsAnalyzed;
  /// The listed lines that it has, and `around` lines before and behind each. In a source that has
  /// changed they may be others than those that the reports mean.
  std::vector<LinePicker::Hunk> hunks;
};

/// Reads the source `path` below `root` once. `listed` ascends. Throws nothing but std::bad_alloc;
/// any thread may call it.
[[nodiscard]] ListedSource ReadListedSource(Reports const& reports,
                                            std::filesystem::path const& path,
                                            std::filesystem::path const& root,
                                            std::span<std::uint32_t const> listed,
                                            std::uint32_t around);

}  // namespace tree
