// A choice of diagnostics.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// Holds what lists like V501,V600-V699 name; the V may be left out.
class CodeSet {
 public:
  CodeSet() = default;
  /// Throws std::runtime_error for a list that cannot be read.
  explicit CodeSet(std::vector<std::string> const& lists);

  [[nodiscard]] bool IsEmpty() const { return m_codes.empty(); }

  [[nodiscard]] bool Holds(std::uint64_t code) const;

  /// As they were typed.
  [[nodiscard]] std::string const& Typed() const { return m_typed; }

 private:
  struct Codes {
    std::uint64_t first;
    std::uint64_t last;
  };

  void Add(std::string_view codes);

  std::string m_typed;
  std::vector<Codes> m_codes;
};

}  // namespace companion
