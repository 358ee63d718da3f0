#include "merge/reading/report_reader.h"

#include <istream>
#include <utility>

#include "merge/reading/file_from_json.h"
#include "merge/reading/framed_record.h"
#include "merge/reading/plain_record.h"
#include "merge/reading/report_json.h"
#include "merge/reading/structured_report_reader.h"

namespace {

constexpr std::string_view Blanks = " \t\n\v\f\r";

}  // namespace

void ReportReader::PassOverMark() {
  m_window.PassOverByteOrderMark();
}

std::optional<FileSet> ReportReader::ReadStructured() {
  // What begins with a record that can be read plainly is raw for certain.
  if (File first; NextPlain(first)) {
    m_ahead = std::move(first);
    return std::nullopt;
  }
  auto files = ReadStructuredReport(m_window);
  m_isStructured = files.has_value();
  return files;
}

bool ReportReader::Next(File& file) {
  if (m_ahead) {
    file = *std::exchange(m_ahead, std::nullopt);
    return true;
  }
  if (NextPlain(file)) {
    return true;
  }
  if (m_window.Rest().empty()) {
    return false;
  }
  m_isBlank = m_isBlank && Blanks.find(m_window.Rest().front()) != std::string_view::npos;
  m_window.Unmark();
  const std::uint64_t front = m_window.Position();
  FramedRecord record(m_window);
  std::istream text(&record);
  const nlohmann::json tree = ParseReportJson(text);
  if (!record.Close()) {
    m_isCutShort = true;
    return false;
  }
  m_last = m_window.ConsumedFrom(front);
  file = tree.get<File>();
  return true;
}

void ReportReader::PassOverRepeats() {
  m_repeated.Remember(m_last);
}

bool ReportReader::IsBlank() {
  return m_isBlank && !m_isStructured && !m_window.SkipAny(Blanks);
}

bool ReportReader::NextPlain(File& file) {
  if (!SkipRepeats()) {
    return false;
  }
  const std::uint64_t front = m_window.Position();
  m_window.Mark();
  const bool isRead = ReadPlainRecord(m_window, file);
  m_isBlank = m_isBlank && !isRead;
  m_last = m_window.ConsumedFrom(front);
  return isRead;
}

/// False when the report ends there.
bool ReportReader::SkipRepeats() {
  while (m_window.SkipAny("\n")) {
    const std::size_t length = m_repeated.LengthAtFront(m_window.Rest());
    if (length == 0) {
      return true;
    }
    m_window.Consume(length);
  }
  return false;
}
