// The sizes of the windows through which files are read and written.
#pragma once

#include <cstddef>

/// `size` in bytes, or a few hundred bytes in a build for fuzzing: its inputs are small, and
/// mistakes are made at the edges of windows.
constexpr std::size_t WindowBytes(std::size_t size) {
#ifdef QLN_SMALL_WINDOWS
  return size < 256 ? size : 256;
#else
  return size;
#endif
}
