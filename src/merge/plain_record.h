// Reading file records of the usual form without a tree.
#pragma once

#include <cstddef>
#include <string_view>

#include "merge/file.h"
#include "merge/report_window.h"

/// What became of reading a plain record.
struct PlainRecord {
  std::size_t length = 0;   ///< In bytes; 0 when none was read.
  bool isCutShort = false;  ///< None was read, perhaps only because the text ends too early.
};

/// Reads the file record at the front of `text` in one pass, if it is written plainly: the known
/// keys, each at most once; numbers of digits alone, below 10^19; text of printable ASCII without a
/// backslash or a brace. Every other text, malformed or cut short, is not read and leaves `file` in
/// pieces: the JSON library alone decides what an unusual record means, and what is none.
///
/// What it reads is what from_json makes of the same text. Having no brace in its strings, such a
/// record also ends where counting braces would end it. The lines that `file` holds are
/// overwritten, so that one used again and again needs no new memory.
[[nodiscard]] PlainRecord ReadPlainRecord(std::string_view text, File& file);

/// Reads the plain record at the front of the window, which grows with it if need be. The record's
/// length, for the caller to consume; 0 when none stands there.
[[nodiscard]] std::size_t ReadPlainRecord(ReportWindow& window, File& file);
