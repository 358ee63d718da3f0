#include "merge/paths/path_order.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

/// How many bytes at the front of both are the same. Looks at eight at once, which the compiler
/// makes one comparison: this is where merging spends its time when it looks for a path.
std::size_t CommonLength(std::string_view left, std::string_view right) {
  constexpr std::size_t step = 8;
  const std::size_t size = std::min(left.size(), right.size());
  std::size_t at = 0;
  while (size - at >= step && std::memcmp(left.data() + at, right.data() + at, step) == 0) {
    at += step;
  }
  while (at < size && left[at] == right[at]) {
    ++at;
  }
  return at;
}

}  // namespace

int ComparePaths(std::filesystem::path const& left, std::filesystem::path const& right) {
  const std::string_view leftText = left.native();
  const std::string_view rightText = right.native();
  const std::size_t common = CommonLength(leftText, rightText);

  // A path that ends comes before one that goes on, and an element that ends before a longer one.
  const auto rank = [common](std::string_view text) {
    if (common == text.size()) {
      return 0;
    }
    return text[common] == '/' ? 1 : 2 + static_cast<unsigned char>(text[common]);
  };
  const int leftRank = rank(leftText);
  const int rightRank = rank(rightText);
  // Where a separator stands at the front or behind another, the text alone does not say: a path
  // from the root on sorts by that first, and a run of separators counts as one.
  const bool isSubtle = common == 0 || leftText[common - 1] == '/';
  if (isSubtle && (leftRank == 1 || rightRank == 1)) {
    return left.compare(right);
  }
  return leftRank - rightRank;
}
