// A choice of diagnostics.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// Holds what a list like V501,V600-V699 names; all diagnostics when no list was given.
class CodeSet {
 public:
  /// Throws std::runtime_error for a list that cannot be read.
  explicit CodeSet(std::vector<std::string> const& lists);

  [[nodiscard]] bool Holds(std::uint64_t code) const;

 private:
  struct Codes {
    std::uint64_t first;
    std::uint64_t last;
  };

  void Add(std::string_view codes);

  std::vector<Codes> m_codes;
};

}  // namespace companion
