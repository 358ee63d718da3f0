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
/// Braces inside JSON strings are counted, too. Any byte but LF between two records, such as a
/// blank or the carriage return of a CR LF, is a record of its own, which no JSON parser accepts.
/// Both are how the analyzer core frames its records, and kept: a report that breaks the rules is
/// refused rather than guessed at. A record that is not closed when the report ends is dropped
/// without a message.
///
/// For use by one thread at a time.
class RawRecordReader {
 public:
  /// Opens nothing yet: the report may be a pipe, which can be read only once, and the attempt to
  /// read it as a structured report comes first.
  explicit RawRecordReader(std::filesystem::path path) : m_path(std::move(path)) {}

  /// Whether the report is an ordinary file and certainly raw, because it begins with a record that
  /// can be read plainly, and so with no structured report. That record is kept for Next. May only
  /// be called before Next.
  [[nodiscard]] bool IsRawForCertain();

  /// Whether the report could not be opened or read to its end, as far as it was read.
  [[nodiscard]] bool Failed() const { return m_window && m_window->Failed(); }

  /// Reads the next record into `file`, whose memory is used again; false at the end of the report
  /// or when reading fails. Throws the JSON library's exceptions for what is no file record.
  [[nodiscard]] bool Next(File& file);

  /// Tells the reader that the record last read has been merged and would change nothing if it came
  /// again. Next then passes over its repeats without reading them. (A report is full of repeats,
  /// because it has the record of a header once for each source that includes it.)
  void PassOverRepeats();

 private:
  [[nodiscard]] bool NextPlain(File& file);
  [[nodiscard]] bool SkipRepeats();

  std::filesystem::path m_path;
  std::optional<ReportWindow> m_window;
  std::optional<File> m_ahead;
  std::string_view m_last;  ///< The text of the record last read; empty if the window lost it.
  RepeatedRecords m_repeated;
};
