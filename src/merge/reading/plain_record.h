// Reading file records of the usual form without a tree.
#pragma once

#include "merge/file.h"
#include "merge/reading/report_window.h"

/// Reads and consumes the file record at the front of the window in one pass, if it is written
/// plainly: the known keys, each at most once; numbers of digits alone, below 10^19; text of
/// printable ASCII without a backslash or a brace. `file` then holds what from_json would make of
/// the same text. As none of its strings holds a brace, such a record also ends at the very byte
/// at which a reader that only counts braces would end it.
///
/// False for every other text, be it unusual, malformed or cut short: the window then stands where
/// it stood, and `file` holds anything. What such a text means, or that it is an error, the JSON
/// library decides alone.
///
/// The memory of the lines that `file` already holds is used again, so that a caller who passes the
/// same one for each record seldom allocates.
///
/// The window must be able to return to where it stands: in a pipe, it is marked there or before.
[[nodiscard]] bool ReadPlainRecord(ReportWindow& window, File& file);
