// A text with its line ends written in another way.
#pragma once

#include <string_view>

namespace companion {

/// Whether `hash` is that of `text` with LF, or with CR LF, for every line end. Never of a text in
/// which a CR stands for itself, and so might end a line of one form and not of the other.
[[nodiscard]] bool IsHashButForLineEnds(std::string_view hash, std::string_view text);

}  // namespace companion
