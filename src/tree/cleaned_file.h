// What became of one source in a cleanup.
#pragma once

#include <cstdint>
#include <filesystem>

#include "merge/file.h"

namespace tree {

enum class CleanedState : std::uint8_t {
  AsItShouldBe,  ///< The source is the one that was analyzed, cleaned; so its backup says, or,
                 ///< where that is deleted, its hash with the markers put back.
  BrokenOff,     ///< The backup is; the source is a beginning of what it should be, or gone.
  Other,         ///< Nothing is known of it.
};

/// Holds a source against its backup and the record.
[[nodiscard]] CleanedState StateOf(File const& file, std::filesystem::path const& root);

}  // namespace tree
