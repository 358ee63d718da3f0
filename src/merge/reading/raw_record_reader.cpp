#include "merge/reading/raw_record_reader.h"

#include <istream>

#include "merge/reading/file_from_json.h"
#include "merge/reading/framed_record.h"
#include "merge/reading/plain_record.h"
#include "merge/reading/report_tree.h"

bool RawRecordReader::IsRawForCertain() {
  std::error_code ignored;
  File first;
  if (std::filesystem::is_regular_file(m_path, ignored) && NextPlain(first)) {
    m_ahead = std::move(first);
  }
  return m_ahead.has_value();
}

bool RawRecordReader::Next(File& file) {
  if (m_ahead) {
    file = *std::exchange(m_ahead, std::nullopt);
    return true;
  }
  if (NextPlain(file)) {
    return true;
  }
  if (m_window->Rest().empty()) {
    return false;
  }
  FramedRecord record(*m_window);
  std::istream text(&record);
  const nlohmann::json tree = ReadReportTree(text);
  if (!record.Close()) {
    return false;
  }
  file = tree.get<File>();
  return true;
}

void RawRecordReader::PassOverRepeats() {
  m_repeated.Remember(m_last);
}

bool RawRecordReader::NextPlain(File& file) {
  if (!m_window) {
    m_window.emplace(m_path);
  }
  if (!SkipRepeats()) {
    return false;
  }
  const std::uint64_t front = m_window->Position();
  const bool isRead = ReadPlainRecord(*m_window, file);
  m_last = m_window->ConsumedFrom(front);
  return isRead;
}

/// False when the report ends there.
bool RawRecordReader::SkipRepeats() {
  while (m_window->SkipAny("\n")) {
    const std::size_t length = m_repeated.LengthAtFront(m_window->Rest());
    if (length == 0) {
      return true;
    }
    m_window->Consume(length);
  }
  return false;
}
