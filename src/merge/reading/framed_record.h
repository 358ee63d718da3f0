// The text of a report, or of one record of it, for a parser.
#pragma once

#include <streambuf>

#include "merge/reading/report_window.h"

/// Reads what is left of a report. What has been read is consumed from the window, so that a text
/// of any length needs no more memory than the window has.
class ReportText : public std::streambuf {
 public:
  /// `window` must outlive the text.
  explicit ReportText(ReportWindow& window) : m_window(window) {}

 protected:
  int_type underflow() override;

  /// How many bytes at the front of what the window holds belong to the text; never asked while it
  /// holds none.
  [[nodiscard]] virtual std::size_t Length(std::string_view held) { return held.size(); }

 private:
  ReportWindow& m_window;
  std::size_t m_shown = 0;  ///< Bytes at the front of the window that are being read.
};

/// Cuts a record by counting braces: reads up to the byte at which as many are closed as were
/// opened, or to the end of the report. The window must not be at the end.
class FramedRecord : public ReportText {
 public:
  using ReportText::ReportText;

  /// Reads on to the end of the record. False when the report ended before its braces balanced.
  [[nodiscard]] bool Close();

 protected:
  [[nodiscard]] std::size_t Length(std::string_view held) override;

 private:
  bool m_isBegun = false;      ///< Whether the record has any byte yet; m_depth is 0 before, too.
  std::ptrdiff_t m_depth = 0;  ///< Braces opened less those closed; may be negative.
};
