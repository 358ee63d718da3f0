// How a check that fuzz programs and tests share says that something does not hold.
#pragma once

#include <cstdio>

/// Throws `what`, unless `holds`: a fuzz program ends, and libFuzzer keeps the input.
inline void Require(bool holds, char const* what) {
  if (!holds) {
    std::fprintf(stderr, "Does not hold: %s\n", what);
    throw what;
  }
}
