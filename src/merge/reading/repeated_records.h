// Recognising the repeats of a record by its bytes.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Remembers the texts of records, for each source path the latest. A raw report holds the record
/// of a header once for each source that includes it, mostly in the same bytes, and comparing these
/// is many times as fast as reading the record again. Only records that begin with their path, as
/// the analyzer core writes them, are remembered; for others nothing is gained. For use by one
/// thread at a time.
class RepeatedRecords {
 public:
  /// Remembers the text of one whole record.
  void Remember(std::string_view record);

  /// The length of the remembered record that `text` begins with; 0 when there is none.
  [[nodiscard]] std::size_t LengthAtFront(std::string_view text);

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  /// By path, the place of its record in m_texts.
  std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> m_places;
  /// In the order in which the paths were first remembered. Repeats mostly come in that order, too:
  /// the record behind the one last found is tried first, and mostly saves the search.
  std::vector<std::string> m_texts;
  std::size_t m_expected = 0;  ///< The place to try first.
};
