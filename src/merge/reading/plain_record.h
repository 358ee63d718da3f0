// Reading file records of the usual form without a tree.
#pragma once

#include "merge/file.h"
#include "merge/reading/report_window.h"

/// Reads and consumes the file record at the front of the window in one pass, if it is written
/// plainly: the known keys, each at most once; numbers of digits alone, below 10^19; text of
/// printable ASCII without a backslash or a brace. Every other text, malformed or cut short, is not
/// read: false, with the window where it was and `file` in pieces. The JSON library alone decides
/// what an unusual record means, and what is none.
///
/// What is read is what from_json makes of the same text. Having no brace in its strings, such a
/// record also ends where counting braces would end it. The lines that `file` holds are
/// overwritten, so that one used again and again needs no new memory.
///
/// A record may be far longer than the window, which lets go of what is read; so nothing is read
/// plainly from a pipe, in which there is no way back.
[[nodiscard]] bool ReadPlainRecord(ReportWindow& window, File& file);
