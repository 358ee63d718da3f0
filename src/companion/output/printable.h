// Text that does a terminal no harm.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace companion {

/// `text` with every control character, and every byte that belongs to no UTF-8 character, written
/// as \n, \t or \x1b, and every character that turns or hides the text around it as \u202e. A
/// backslash stays as it is: this is for people to read.
[[nodiscard]] std::string Printable(std::string_view text);

/// The length of the UTF-8 character that the text begins with, in bytes; 0 when it is none.
[[nodiscard]] std::size_t CharacterLength(std::string_view text);

/// Whether a control character stands in `text`.
[[nodiscard]] bool HoldsControl(std::string_view text);

}  // namespace companion
