// The lines of a source that reports speak of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "companion/reports/reports.h"
#include "companion/safety/cut_safety.h"
#include "companion/sources/line_picker.h"

namespace companion {

/// What a cleanup would make of the source as it is now: it cleans what is as it was analyzed.
enum class SourceCondition : std::uint8_t { AsAnalyzed, Missing, Changed, Unreadable };

struct SourceExcerpt {
  SourceCondition condition = SourceCondition::AsAnalyzed;
  /// The listed lines that it has, and those around each. In a source that has
  /// changed they may be others than those that the reports mean.
  std::vector<LinePicker::Hunk> hunks;
  /// Where it is as it was analyzed: the lines that are agreed, and not safe to take out.
  std::vector<UnsafeLine> unsafe;
};

/// Reads the source `path` below `root` once. `listed` ascends; of a line at most
/// `mostOfLine` bytes are kept. Throws nothing but std::bad_alloc; any thread may call it.
[[nodiscard]] SourceExcerpt ReadExcerpt(Reports const& reports, std::filesystem::path const& path,
                                        std::filesystem::path const& root,
                                        std::span<std::uint32_t const> listed,
                                        LinePicker::Around around,
                                        std::size_t mostOfLine = LinePicker::UsualMost);

}  // namespace companion
