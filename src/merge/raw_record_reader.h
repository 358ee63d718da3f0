// Cutting a raw report into its records.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "merge/input_file.h"

/// Cuts a raw report into the texts of its records by counting braces, not by parsing:
///
///   report = { LF | record }
///   record = first byte that is no LF ... byte at which the braces balance
///
/// "{"a":{}}LF{"b":1}" gives the records "{"a":{}}" and "{"b":1}".
///
/// Braces inside JSON strings count too, and any other byte between two records, a blank or the
/// carriage return of a CR LF, is a record of its own, which no JSON parser accepts. Both are the
/// analyzer core's framing and kept: such a report is refused rather than guessed at. A record
/// that does not close before the end of the file is dropped without a message.
///
/// Reads through a window that grows only when a single record does not fit.
class RawRecordReader {
 public:
  /// `input` must outlive the reader.
  explicit RawRecordReader(InputFile& input);

  /// The next record, valid until the next call; nothing at the end of the file or when reading
  /// fails. Throws only std::bad_alloc.
  [[nodiscard]] std::optional<std::string_view> Next();

 private:
  [[nodiscard]] bool SkipLineFeeds();
  [[nodiscard]] std::optional<std::size_t> FindRecordEnd();
  [[nodiscard]] bool ReadMore();

  InputFile& m_input;
  std::vector<char> m_window;
  std::size_t m_begin = 0;  ///< The first byte of the window that no record has taken yet.
  std::size_t m_end = 0;    ///< Behind the last byte read.
};
