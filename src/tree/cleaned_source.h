// Whether a source is what a cleanup made of its backup.
#pragma once

#include <cstdint>

#include "cleaner/source_file.h"

namespace tree {

enum class SourceState : std::uint8_t {
  Cleaned,     ///< The backup less some markers, so that all it holds is in the backup too.
  BrokenOff,   ///< A beginning of such a text, as an interruption or a full disk leaves it.
  Changed,     ///< Anything else.
  Unreadable,  ///< Source or backup could not be read to its end.
};

/// Compares both in one pass or two, byte by byte; a marker is //-V and the digits behind it. Both
/// must be open.
[[nodiscard]] SourceState StateOf(SourceFile& source, SourceFile& backup);

}  // namespace tree
