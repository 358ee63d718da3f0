#include "merge/raw_record_reader.h"

#include <nlohmann/json.hpp>

#include "merge/plain_record.h"
#include "merge/report_json.h"

bool RawRecordReader::Next(File& file) {
  if (!m_window.SkipAny("\n")) {
    return false;
  }
  if (const auto length = ReadPlainRecord(m_window.Rest(), file)) {
    m_window.Consume(*length);
    return true;
  }
  // Unusual, or not yet in the window as a whole.
  const std::size_t length = m_window.FrameRecord();
  if (length == 0) {
    return false;
  }
  const std::string_view record = m_window.Rest().substr(0, length);
  if (ReadPlainRecord(record, file) != length) {
    file = nlohmann::json::parse(record).get<File>();
  }
  m_window.Consume(length);
  return true;
}
