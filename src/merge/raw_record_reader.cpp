#include "merge/raw_record_reader.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace {
constexpr std::size_t InitialWindowSize = std::size_t{128} * 1024;
}

RawRecordReader::RawRecordReader(InputFile& input) : m_input(input), m_window(InitialWindowSize) {}

std::optional<std::string_view> RawRecordReader::Next() {
  if (!SkipLineFeeds()) {
    return std::nullopt;
  }
  const auto length = FindRecordEnd();
  if (!length) {
    return std::nullopt;
  }
  const std::string_view record(m_window.data() + m_begin, *length);
  m_begin += *length;
  return record;
}

bool RawRecordReader::SkipLineFeeds() {
  while (m_begin < m_end || ReadMore()) {
    if (m_window[m_begin] != '\n') {
      return true;
    }
    ++m_begin;
  }
  return false;
}

/// The length of the record that starts at m_begin, or nothing when the file ends before it does.
std::optional<std::size_t> RawRecordReader::FindRecordEnd() {
  std::int64_t depth = 0;
  for (std::size_t length = 0; m_begin + length < m_end || ReadMore();) {
    const char byte = m_window[m_begin + length];
    ++length;
    depth += static_cast<int>(byte == '{') - static_cast<int>(byte == '}');
    if (depth == 0) {
      return length;
    }
  }
  return std::nullopt;
}

/// Moves the unfinished record to the front of the window, makes the window larger when the record
/// fills it, and reads on. False when nothing more is to be had.
bool RawRecordReader::ReadMore() {
  std::copy(m_window.data() + m_begin, m_window.data() + m_end, m_window.data());
  m_end -= m_begin;
  m_begin = 0;
  if (m_end == m_window.size()) {
    m_window.resize(2 * m_window.size());
  }
  const std::size_t count = m_input.Read(std::span(m_window).subspan(m_end));
  m_end += count;
  return count > 0;
}
