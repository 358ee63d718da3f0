#include "merge/reading/repeated_records.h"

namespace {

/// The bytes between the quotes of the path that a record begins with; empty when it does not begin
/// with one. A path that holds an escaped quote ends there. That is harmless: two paths with the
/// same beginning then share one place, of which only the later record is remembered, and what is
/// remembered is always compared in all its bytes.
std::string_view LeadingPath(std::string_view record) {
  constexpr std::string_view front = "{\"path\":\"";
  if (!record.starts_with(front)) {
    return {};
  }
  record.remove_prefix(front.size());
  const std::size_t quote = record.find('"');
  return quote == std::string_view::npos ? std::string_view() : record.substr(0, quote);
}

}  // namespace

void RepeatedRecords::Remember(std::string_view record) {
  const std::string_view path = LeadingPath(record);
  if (path.empty()) {
    return;
  }
  const auto [known, isNew] = m_places.try_emplace(std::string(path), m_texts.size());
  if (isNew) {
    m_texts.emplace_back();
  }
  m_texts[known->second] = record;
  m_expected = known->second + 1;
}

std::size_t RepeatedRecords::LengthAtFront(std::string_view text) {
  if (m_texts.empty()) {
    return 0;
  }
  if (m_expected >= m_texts.size() || !text.starts_with(m_texts[m_expected])) {
    const auto known = m_places.find(LeadingPath(text));
    if (known == m_places.end() || !text.starts_with(m_texts[known->second])) {
      return 0;
    }
    m_expected = known->second;
  }
  return m_texts[m_expected++].size();
}
