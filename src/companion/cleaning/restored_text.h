// The source as it was before a cleanup, from the cleaned one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "merge/file.h"

namespace companion {

struct RestoredText {
  std::string text;
  bool hasAllPutBack = false;  ///< None of the listed markers stood there.
};

/// Puts back into `cleaned` the markers of the record where they are gone, as they stood; nothing
/// when the recorded hash does not prove the result. No report tells all that a cleanup took: a
/// marker is taken to be //-V and the code, with zeros between them where it was longer, and blanks
/// that went with it to be all spaces, or all tabs. With other text the source is not recognized.
[[nodiscard]] std::optional<RestoredText> Restored(std::string_view cleaned, File const& file);

}  // namespace companion
