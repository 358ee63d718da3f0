// One record of a report, cut by counting braces.
#pragma once

#include <streambuf>

#include "merge/reading/report_window.h"

/// The bytes of the record that begins at the front of a window, which must not be empty: up to the
/// one at which its braces balance, or to the end of the report. What has been read is consumed, so
/// that a record of any length needs no more memory than the window has.
class FramedRecord : public std::streambuf {
 public:
  /// `window` must outlive the record.
  explicit FramedRecord(ReportWindow& window) : m_window(window) {}

  /// Reads to the end of the record; whether its braces balance there.
  [[nodiscard]] bool Close();

 protected:
  int_type underflow() override;

 private:
  [[nodiscard]] std::size_t LengthInWindow();

  ReportWindow& m_window;
  std::size_t m_shown = 0;  ///< Bytes at the front of the window that are being read.
  bool m_isBegun = false;
  std::ptrdiff_t m_depth = 0;  ///< Below zero in a record that begins with a closing brace.
};
