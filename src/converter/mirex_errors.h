// The message table.
#pragma once

namespace MirexErrors {

/// The message for a redundant marker; %1% stands for the diagnostic number (see FillTemplate).
[[nodiscard]] const char* RedundantFA();

}  // namespace MirexErrors
