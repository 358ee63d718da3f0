#include "merge/raw_record_reader.h"

#include <nlohmann/json.hpp>

#include "merge/plain_record.h"
#include "merge/report_json.h"

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
  const std::string_view record = m_window->FrameRecord();
  if (record.empty()) {
    return false;
  }
  file = nlohmann::json::parse(record).get<File>();
  m_window->Consume(record.size());
  return true;
}

bool RawRecordReader::NextPlain(File& file) {
  if (!m_window) {
    m_window.emplace(m_path);
  }
  return m_window->SkipAny("\n") && TakePlainRecord(*m_window, file);
}
