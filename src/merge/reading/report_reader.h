// Reading a report, once from its front to its end, and what shows of it meanwhile.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "merge/file.h"
#include "merge/reading/repeated_records.h"
#include "merge/reading/report_window.h"

/// A raw report is cut into its records by counting braces, not by parsing:
///
///   report = { LF | record }
///   record = first byte that is no LF ... byte at which the braces balance
///
/// "{"a":{}}LF{"b":1}" holds the records "{"a":{}}" and "{"b":1}".
///
/// Braces inside JSON strings are counted, too. Any byte but LF between two records, such as a
/// blank or the carriage return of a CR LF, is a record of its own, which no JSON parser accepts.
/// Both are how the analyzer core frames its records, and kept: a report that breaks the rules is
/// refused rather than guessed at. A record that is not closed when the report ends is dropped;
/// IsCutShort tells of it.
///
/// For use by one thread at a time.
class ReportReader {
 public:
  /// Opens the report, which waits for whoever writes into a named pipe. One that cannot be opened
  /// reads as empty, and Failed() says so.
  explicit ReportReader(std::filesystem::path const& path) : m_path(path), m_window(path) {}

  [[nodiscard]] std::filesystem::path const& Path() const { return m_path; }

  /// Passes over a byte order mark, which a raw report else must not begin with. May only be called
  /// before the next two.
  void PassOverMark();

  /// The records of a structured report; nothing for any other, which Next then reads as a raw one.
  /// May only be called before Next.
  [[nodiscard]] std::optional<FileSet> ReadStructured();

  /// Reads the next record of a raw report into `file`, whose memory is used again; false at the
  /// end of the report or when reading fails. Throws the JSON library's exceptions for what is no
  /// file record.
  [[nodiscard]] bool Next(File& file);

  /// Tells the reader that the record last read has been merged and would change nothing if it came
  /// again. Next then passes over its repeats without reading them. (A report is full of repeats,
  /// because it has the record of a header once for each source that includes it.)
  void PassOverRepeats();

  // What shows of the report once it is read, or reading it has thrown.

  /// Whether it could not be opened or read to its end.
  [[nodiscard]] bool Failed() const { return m_window.Failed(); }
  [[nodiscard]] bool IsStructured() const { return m_isStructured; }
  /// Whether it is raw and ends inside a record.
  [[nodiscard]] bool IsCutShort() const { return m_isCutShort; }
  /// Whether it holds nothing but blanks and line ends. Reads on over these.
  [[nodiscard]] bool IsBlank();

 private:
  [[nodiscard]] bool NextPlain(File& file);
  [[nodiscard]] bool SkipRepeats();

  std::filesystem::path m_path;
  ReportWindow m_window;
  std::optional<File> m_ahead;
  std::string_view m_last;  ///< The text of the record last read; empty if the window lost it.
  RepeatedRecords m_repeated;
  bool m_isStructured = false;
  bool m_isCutShort = false;
  bool m_isBlank = true;  ///< So far.
};
