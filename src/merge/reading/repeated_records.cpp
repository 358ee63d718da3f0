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
  const auto [known, isNew] = m_records.try_emplace(std::string(path));
  if (isNew) {
    known->second.place = m_inOrder.size();
    m_inOrder.push_back(&known->second);
  }
  known->second.text = record;
  m_expected = known->second.place + 1;
}

std::size_t RepeatedRecords::LengthAtFront(std::string_view text) {
  if (m_expected >= m_inOrder.size() || !text.starts_with(m_inOrder[m_expected]->text)) {
    const auto known = m_records.find(LeadingPath(text));
    if (known == m_records.end() || !text.starts_with(known->second.text)) {
      return 0;
    }
    m_expected = known->second.place;
  }
  return m_inOrder[m_expected++]->text.size();
}
