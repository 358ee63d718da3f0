// Reading a raw report record by record.
#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "merge/file.h"
#include "merge/reading/repeated_records.h"
#include "merge/reading/report_window.h"

/// Cuts a raw report into its records by counting braces, not by parsing, and reads each:
///
///   report = { LF | record }
///   record = first byte that is no LF ... byte at which the braces balance
///
/// "{"a":{}}LF{"b":1}" holds the records "{"a":{}}" and "{"b":1}".
///
/// Braces inside JSON strings count too, and any other byte between two records, a blank or the
/// carriage return of a CR LF, is a record of its own, which no JSON parser accepts. Both are the
/// analyzer core's framing and kept: such a report is refused rather than guessed at. A record
/// that does not close before the end of the report is dropped without a message.
class RawRecordReader {
 public:
  /// Opens nothing yet: what is no ordinary file, a pipe for one, may be readable only once.
  explicit RawRecordReader(std::filesystem::path path) : m_path(std::move(path)) {}

  /// Whether the report is an ordinary file and raw for certain: its first value is a plain record,
  /// and so no structured report. To be asked first, if at all; reads ahead that one record.
  [[nodiscard]] bool IsRawForCertain();

  /// Reads the next record into `file`, whose memory is used again; false at the end of the report
  /// or when reading fails. Throws the JSON library's exceptions for what is no file record.
  [[nodiscard]] bool Next(File& file);

  /// Says that the record last read, if it came again byte for byte, would change nothing. Next
  /// passes over such repeats, of which a report is full: a header is recorded for each source that
  /// includes it.
  void PassOverRepeats();

 private:
  [[nodiscard]] bool NextPlain(File& file);
  [[nodiscard]] bool SkipRepeats();

  std::filesystem::path m_path;
  std::optional<ReportWindow> m_window;
  std::optional<File> m_ahead;
  std::string_view m_last;  ///< The text of the record last read; empty if too long.
  RepeatedRecords m_repeated;
};
