// What a cleanup has made of one source.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "companion/backups/backup_pair.h"
#include "companion/output/complaint.h"
#include "merge/file.h"

namespace companion {

struct CleanupOutcome {
  enum class State : std::uint8_t {
    Cleaned,  ///< The source is the one that was analyzed, cleaned; the backup proves it.
    Kept,  ///< The same, but the backup is deleted; the hash with the markers put back proves it.
    BrokenOff,  ///< The backup is the one that was analyzed; the source is a beginning, or gone.
    Unknown,    ///< Nothing is known of it.
  };

  State state = State::Unknown;
  /// Of what was looked at, when it is Cleaned.
  std::optional<PairVersions> versions{};
  /// Why it could not be looked at, when it is Unknown for that.
  Complaint complaint{};
};

/// Holds a source against its backup and the record: reads each once, mostly. A cleanup may have
/// left lines that are not safe, and may have taken blanks, too, as WithBlanks tells; the latter is
/// thought of first if it `takesBlanks`. Any thread may call it.
[[nodiscard]] CleanupOutcome OutcomeOf(File const& file, std::filesystem::path const& root,
                                       bool takesBlanks);

}  // namespace companion
