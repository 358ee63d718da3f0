#include "companion/selection/code_set.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>

namespace companion {

namespace {

/// Digits, mostly behind a V.
std::optional<std::uint64_t> CodeOf(std::string_view text) {
  const std::size_t digits = text.starts_with('V') || text.starts_with('v') ? 1 : 0;
  std::uint64_t code = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data() + digits, end, code);
  return error == std::errc() && rest == end ? std::optional(code) : std::nullopt;
}

}  // namespace

CodeSet::CodeSet(std::vector<std::string> const& lists) {
  for (std::string_view rest : lists) {
    m_typed.append(m_typed.empty() ? "" : ",").append(rest);
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
      comma = rest.find(',');
      Add(rest.substr(0, comma));
      rest.remove_prefix(
          std::min(rest.size(), comma == std::string_view::npos ? comma : comma + 1));
    }
  }
}

bool CodeSet::Holds(std::uint64_t code) const {
  return std::ranges::any_of(
      m_codes, [code](Codes const& codes) { return codes.first <= code && code <= codes.last; });
}

void CodeSet::Add(std::string_view codes) {
  const std::size_t dash = codes.find('-');
  const auto first = CodeOf(codes.substr(0, dash));
  const auto last = dash == std::string_view::npos ? first : CodeOf(codes.substr(dash + 1));
  if (!first || !last || *first > *last) {
    throw std::runtime_error("no code, and no range of codes: " + std::string(codes));
  }
  m_codes.push_back({*first, *last});
}

}  // namespace companion
