// What was meant by a misspelt word.
#pragma once

#include <span>
#include <string_view>

namespace companion {

/// The nearest of some words: it takes the fewest letters put in, left out, replaced, or swapped
/// with the next one, and at most one for each two letters of the word. Empty when none is near.
[[nodiscard]] std::string_view SimilarWord(std::string_view word,
                                           std::span<std::string_view const> words);

}  // namespace companion
