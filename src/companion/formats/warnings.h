// What a warnings report says.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

namespace companion {

struct WarningPlace {
  std::string const* file = nullptr;  ///< As the report writes it.
  std::uint32_t line = 0;             ///< 1-based; 0 when there is none. So is endLine.
  std::uint32_t endLine = 0;
};

struct FoundWarning {
  std::string const* code = nullptr;
  std::string const* message = nullptr;
  std::vector<WarningPlace> places;
};

/// The warnings of a report in its order. Texts are held once, since most come again and again.
class Warnings {
 public:
  /// Throws std::runtime_error when the report is not there, cannot be read, or is something else.
  explicit Warnings(std::filesystem::path const& report);

  [[nodiscard]] std::vector<FoundWarning> const& All() const { return m_all; }

 private:
  class Reader;

  std::unordered_set<std::string> m_texts;
  std::vector<FoundWarning> m_all;
};

}  // namespace companion
