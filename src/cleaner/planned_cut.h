// What a cleanup would make of a source.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The bytes [begin, end) of a source, 0-based.
struct ByteRange {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

/// A source as it is, and what a cleanup would leave out of it.
struct PlannedCut {
  std::string before;
  std::vector<ByteRange> dropped;  ///< Ascending; adjacent ones are joined.
};
