// How a fuzz program says that something does not hold.
#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process, for libFuzzer to keep the input, unless `holds`.
inline void Require(bool holds, char const* what) {
  if (!holds) {
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
  }
}
