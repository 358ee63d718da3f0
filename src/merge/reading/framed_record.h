// One record of a report, cut by counting braces.
#pragma once

#include <streambuf>

#include "merge/reading/report_window.h"

/// Reads the record that begins at the front of a window, which must not be empty: the bytes up to
/// the one at which as many braces are closed as were opened, or to the end of the report. What has
/// been read is consumed from the window, so that a record of any length needs no more memory than
/// the window has.
class FramedRecord : public std::streambuf {
 public:
  /// `window` must outlive the record.
  explicit FramedRecord(ReportWindow& window) : m_window(window) {}

  /// Reads on to the end of the record. False when the report ended before its braces balanced.
  [[nodiscard]] bool Close();

 protected:
  int_type underflow() override;

 private:
  [[nodiscard]] std::size_t LengthInWindow();

  ReportWindow& m_window;
  std::size_t m_shown = 0;     ///< Bytes at the front of the window that are being read.
  bool m_isBegun = false;      ///< Whether the record has any byte yet; m_depth is 0 before, too.
  std::ptrdiff_t m_depth = 0;  ///< Braces opened less those closed; may be negative.
};
