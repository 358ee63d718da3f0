// What is told to the user of something that was not done.
#pragma once

#include <optional>
#include <string>

namespace companion {

/// Why something was refused or failed, in the words of the line that says so; nothing when all is
/// well, and so false where it is asked.
using Complaint = std::optional<std::string>;

}  // namespace companion
