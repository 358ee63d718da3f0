// Complaints that may come in thousands.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "companion/output/console.h"

namespace companion {

/// The kind of a complaint: what stands in front of its first colon or name.
[[nodiscard]] inline std::string KindOf(std::string const& text) {
  return text.substr(0, std::min(text.find(": "), text.find(" '")));
}

/// Prints the first ten of each kind, and counts the others: thousands of lines hide their cause.
/// For the main thread.
class Complaints {
 public:
  Complaints(Console& console, bool areAllPrinted)
      : m_console(console), m_areAllPrinted(areAllPrinted) {}

  void Add(std::string_view kind, std::string const& text);

  void Add(std::string const& text) { Add(KindOf(text), text); }

  /// Tells how many there are that were not printed.
  void Finish();

  [[nodiscard]] bool AreNone() const { return m_counts.empty(); }

 private:
  Console& m_console;
  bool m_areAllPrinted;
  std::map<std::string, std::size_t, std::less<>> m_counts;  ///< By kind.
};

}  // namespace companion
