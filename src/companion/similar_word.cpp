#include "companion/similar_word.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace companion {

namespace {

std::size_t Distance(std::string_view one, std::string_view other) {
  // Rows of the distances between the beginnings of both, each row of one letter more.
  std::vector<std::size_t> beforeLast(other.size() + 1);
  std::vector<std::size_t> last(other.size() + 1);
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 1; i <= one.size(); ++i) {
    std::swap(beforeLast, last);
    std::swap(last, row);
    row[0] = i;
    for (std::size_t k = 1; k <= other.size(); ++k) {
      const std::size_t replaced = last[k - 1] + (one[i - 1] == other[k - 1] ? 0 : 1);
      row[k] = std::min({last[k] + 1, row[k - 1] + 1, replaced});
      if (i > 1 && k > 1 && one[i - 1] == other[k - 2] && one[i - 2] == other[k - 1]) {
        row[k] = std::min(row[k], beforeLast[k - 2] + 1);
      }
    }
  }
  return row.back();
}

}  // namespace

std::string_view SimilarWord(std::string_view word, std::span<std::string_view const> words) {
  std::string_view nearest;
  std::size_t least = word.size() / 2 + 1;
  for (const std::string_view one : words) {
    if (const std::size_t distance = Distance(word, one); distance < least) {
      least = distance;
      nearest = one;
    }
  }
  return nearest;
}

}  // namespace companion
