// Whether the temporary directory serves a cleanup.
#pragma once

#include <cstdint>
#include <vector>

#include "companion/output/complaint.h"

namespace companion {

/// What is wrong with it: it cannot be used, belongs to another account, or has no room for as many
/// of the largest of `sizes`, in bytes, as are cleaned at once.
[[nodiscard]] Complaint WrongWithTemporaryDirectory(std::vector<std::uint64_t> sizes);

}  // namespace companion
