// Reading file records of the usual form without a tree.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "merge/file.h"

/// Reads the file record at the front of `text` in one pass, if it is written plainly: the known
/// keys, each at most once; numbers of digits alone, below 10^19; text of printable ASCII without a
/// backslash or a brace. Returns the record's length in bytes, or nothing for every other text,
/// malformed or cut short, and then leaves `file` in pieces: the JSON library alone decides what an
/// unusual record means, and what is none.
///
/// What it reads is what from_json makes of the same text. Having no brace in its strings, such a
/// record also ends where counting braces would end it. The lines that `file` holds are
/// overwritten, so that one used again and again needs no new memory.
[[nodiscard]] std::optional<std::size_t> ReadPlainRecord(std::string_view text, File& file);
