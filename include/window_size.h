// The sizes of the windows through which files are read and written.
#pragma once

#include <cstddef>

/// `size`, in bytes; in a build for fuzzing at most a few hundred. Mistakes are made at the edges
/// of windows, and the inputs of a fuzz program are too small to reach those of a large one.
constexpr std::size_t WindowBytes(std::size_t size) {
#ifdef QLN_SMALL_WINDOWS
  return size < 256 ? size : 256;
#else
  return size;
#endif
}
