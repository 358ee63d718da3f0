#include "merge/file.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>

#include "merge/paths/source_tree_placeholder.h"
#include "merge/paths/weakly_canonical.h"

namespace {

using Lines = std::vector<Line>;

bool AscendStrictly(Lines const& lines) {
  return std::ranges::adjacent_find(lines, std::ranges::greater_equal(), &Line::line) ==
         lines.end();
}

/// For lines that ascend on both sides, which is how the analyzer core writes them: one walk along
/// both.
void KeepCommonAscending(Lines& lines, Lines const& others) {
  auto other = others.begin();
  std::erase_if(lines, [&](Line const& line) {
    while (other != others.end() && other->line < line.line) {
      ++other;
    }
    return other == others.end() || *other != line;
  });
}

/// For lines that come in any order, but each number once in `others`: the numbers are sorted, with
/// where they stand, and not the lines. False, and nothing is done, when a number comes twice.
bool KeepCommonByNumber(Lines& lines, Lines const& others) {
  if (others.size() > std::numeric_limits<std::uint32_t>::max()) {
    return false;
  }
  constexpr unsigned placeBits = 32;
  const auto number = [](std::uint64_t key) { return key >> placeBits; };
  std::vector<std::uint64_t> keys;
  keys.reserve(others.size());
  for (Line const& other : others) {
    keys.push_back(std::uint64_t{other.line} << placeBits | keys.size());
  }
  std::sort(keys.begin(), keys.end());
  if (std::ranges::adjacent_find(keys, std::ranges::equal_to(), number) != keys.end()) {
    return false;
  }
  const bool ascend = AscendStrictly(lines);
  auto key = keys.begin();
  std::erase_if(lines, [&](Line const& line) {
    if (ascend) {
      while (key != keys.end() && number(*key) < line.line) {
        ++key;
      }
    } else {
      key = std::ranges::lower_bound(keys, line.line, std::ranges::less(), number);
    }
    return key == keys.end() || others[static_cast<std::uint32_t>(*key)] != line;
  });
  return true;
}

/// What lines are sorted and searched by. The number is copied here, so that comparing lines with
/// different numbers, which is nearly every comparison, does not have to follow the pointer.
struct Sought {
  std::uint32_t line;
  std::vector<Marker> const* markers;

  friend bool operator<(Sought const& left, Sought const& right) {
    return left.line != right.line ? left.line < right.line : *left.markers < *right.markers;
  }
};

/// A sorted index and not a hash table, because a report can be made whose lines all have the same
/// hash; every search would then look at every line.
void KeepCommonInAnyOrder(Lines& lines, Lines const& others) {
  const auto sought = [](Line const& line) { return Sought{line.line, &line.markers}; };
  std::vector<Sought> known(others.size());
  std::ranges::transform(others, known.begin(), sought);
  std::sort(known.begin(), known.end());
  std::erase_if(lines, [&](Line const& line) {
    return !std::binary_search(known.begin(), known.end(), sought(line));
  });
}

}  // namespace

void File::Intersect(File const& other) const {
  if (AscendStrictly(lines) && AscendStrictly(other.lines)) {
    KeepCommonAscending(lines, other.lines);
  } else if (!KeepCommonByNumber(lines, other.lines)) {
    KeepCommonInAnyOrder(lines, other.lines);
  }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is the shared one.
std::string File::PathToString(std::filesystem::path sourceTreeRoot) const {
  if (!sourceTreeRoot.empty()) {
    return WeaklyCanonical(sourceTreeRoot / path).string();
  }
  return WithPlaceholder(path.string());
}
