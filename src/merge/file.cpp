#include "merge/file.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <unordered_set>

#include "merge/paths/source_tree_placeholder.h"
#include "merge/paths/weakly_canonical.h"

namespace {

using Lines = std::vector<Line>;

bool AscendStrictly(Lines const& lines) {
  return std::ranges::adjacent_find(lines, std::ranges::greater_equal(), &Line::line) ==
         lines.end();
}

/// With both sides ascending, as the analyzer core writes them: one walk along both.
void KeepCommonAscending(Lines& lines, Lines const& others) {
  auto other = others.begin();
  std::erase_if(lines, [&](Line const& line) {
    while (other != others.end() && other->line < line.line) {
      ++other;
    }
    return other == others.end() || *other != line;
  });
}

struct LineHash {
  std::size_t operator()(Line const* line) const {
    std::size_t hash = line->line;
    for (auto const& [code, columns, offsets] : line->markers) {
      for (const std::uint64_t number :
           {code, columns.begin, columns.end, offsets.begin, offsets.end}) {
        hash = 31 * hash + number;
      }
    }
    return hash;
  }
};

struct SameLine {
  bool operator()(Line const* left, Line const* right) const { return *left == *right; }
};

void KeepCommonInAnyOrder(Lines& lines, Lines const& others) {
  std::unordered_set<Line const*, LineHash, SameLine> known;
  known.reserve(others.size());
  for (Line const& other : others) {
    known.insert(&other);
  }
  std::erase_if(lines, [&known](Line const& line) { return !known.contains(&line); });
}

}  // namespace

void File::Intersect(File const& other) const {
  if (AscendStrictly(lines) && AscendStrictly(other.lines)) {
    KeepCommonAscending(lines, other.lines);
  } else {
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
