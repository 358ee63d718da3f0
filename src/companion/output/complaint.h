// What is told to the user of something that was not done.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace companion {

/// Why something was refused or failed, in the words of the line that says so; nothing when all is
/// well, and so false where it is asked.
using Complaint = std::optional<std::string>;

/// For what a command cannot go on from. Throws std::runtime_error with the words, if there are
/// any.
inline void ThrowIf(Complaint const& complaint) {
  if (complaint) {
    throw std::runtime_error(*complaint);
  }
}

}  // namespace companion
