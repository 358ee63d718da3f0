#include "merge/paths/path_order.h"

#include <algorithm>
#include <string_view>

int ComparePaths(std::filesystem::path const& left, std::filesystem::path const& right) {
  const std::string_view leftText = left.native();
  const std::string_view rightText = right.native();
  const auto [leftEnd, rightEnd] = std::ranges::mismatch(leftText, rightText);
  const auto common = static_cast<std::size_t>(leftEnd - leftText.begin());

  // The end of the text comes before the end of an element, and that before all other bytes.
  const auto rank = [common](std::string_view text) {
    if (common == text.size()) {
      return 0;
    }
    return text[common] == '/' ? 1 : 2 + static_cast<unsigned char>(text[common]);
  };
  const int leftRank = rank(leftText);
  const int rightRank = rank(rightText);
  // One path from the root and one not, or a run of separators, which counts as one.
  const bool isSubtle = common == 0 || leftText[common - 1] == '/';
  if (isSubtle && (leftRank == 1 || rightRank == 1)) {
    return left.compare(right);
  }
  return leftRank - rightRank;
}
