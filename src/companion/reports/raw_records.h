// The records of a raw report, one by one.
#pragma once

#include <filesystem>
#include <functional>

#include "merge/file.h"

namespace companion {

/// Hands every record to `take`, with its path as the report writes it. When that returns true, the
/// record may be passed over where it comes again, byte for byte. Throws std::runtime_error for
/// what is no raw report, or not whole, and whatever `take` throws.
void ReadRawRecords(std::filesystem::path const& report,
                    std::function<bool(File const&)> const& take);

}  // namespace companion
