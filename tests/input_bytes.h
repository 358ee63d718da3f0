// Values out of the bytes of an input, for the checks that fuzz programs and tests share.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// Gives numbers from the end of the input and texts from its front, so that a change to one leaves
/// the others as they are. When nothing is left, numbers are 0 and texts are empty.
class InputBytes {
 public:
  InputBytes(std::uint8_t const* bytes, std::size_t size)
      : m_rest(reinterpret_cast<char const*>(bytes), size) {}

  [[nodiscard]] bool IsEmpty() const { return m_rest.empty(); }

  template <typename Number>
  Number Take() {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number) && !m_rest.empty(); ++i) {
      value = value << 8U | static_cast<unsigned char>(m_rest.back());
      m_rest.remove_suffix(1);
    }
    return static_cast<Number>(std::is_same_v<Number, bool> ? value % 2 : value);
  }

  /// Up to a backslash and the byte behind it; two backslashes are one of the text.
  std::string TakeText() {
    std::string text;
    while (!m_rest.empty() && (!m_rest.starts_with('\\') || m_rest.starts_with("\\\\"))) {
      text += m_rest.front();
      m_rest.remove_prefix(m_rest.front() == '\\' ? 2 : 1);
    }
    m_rest.remove_prefix(std::min<std::size_t>(m_rest.size(), 2));
    return text;
  }

  std::string TakeRest() { return std::string(std::exchange(m_rest, {})); }

 private:
  std::string_view m_rest;
};
