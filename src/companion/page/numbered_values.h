// Values that many have in common, written once.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace companion {

/// Gives each different value a number, from 0 on in the order in which they come.
template <typename Value>
class NumberedValues {
 public:
  /// The number of the value; the next free one, from 0 on, when it is new.
  std::uint32_t NumberOf(Value const& value) {
    const auto next = static_cast<std::uint32_t>(m_inOrder.size());
    const auto [place, isNew] = m_numbers.try_emplace(value, next);
    if (isNew) {
      m_inOrder.push_back(value);
    }
    return place->second;
  }

  [[nodiscard]] std::vector<Value> const& InOrder() const { return m_inOrder; }

 private:
  std::unordered_map<Value, std::uint32_t> m_numbers;
  std::vector<Value> m_inOrder;
};

}  // namespace companion
