// Where rewritten copies of sources are made.
#pragma once

#include <filesystem>

namespace faCleaner {

/// Where rewritten copies are made before they replace their sources: "qln_fp_cleaner" in the
/// system's temporary directory. Creates nothing. Throws std::filesystem::filesystem_error when
/// the temporary directory of the environment does not exist.
[[nodiscard]] std::filesystem::path GetTempDir();

/// The same without a look whether the directory of the environment exists.
[[nodiscard]] std::filesystem::path GetUncheckedTempDir();

}  // namespace faCleaner
