// What became of one source in a cleanup.
#pragma once

#include <cstdint>
#include <filesystem>

#include "merge/file.h"

namespace tree {

enum class CleanedState : std::uint8_t {
  AsItShouldBe,  ///< The backup is the source that was analyzed, and the source is that, cleaned.
  BrokenOff,     ///< The backup is; the source is a beginning of what it should be, or gone.
  Other,         ///< Nothing is known of it.
};

/// Holds a source against its backup and the record.
[[nodiscard]] CleanedState StateOf(File const& file, std::filesystem::path const& root);

}  // namespace tree
