#include "merge/repeated_records.h"

namespace {

/// The bytes between the quotes of the path that a record begins with; empty when it does not. A
/// path with an escaped quote is cut there, which only makes it share its place with another.
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
  if (const std::string_view path = LeadingPath(record); !path.empty()) {
    m_records.insert_or_assign(std::string(path), std::string(record));
  }
}

std::size_t RepeatedRecords::LengthAtFront(std::string_view text) const {
  if (m_records.empty()) {
    return 0;
  }
  const auto known = m_records.find(LeadingPath(text));
  return known != m_records.end() && text.starts_with(known->second) ? known->second.size() : 0;
}
