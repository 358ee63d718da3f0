# The code needs <format> and <syncstream>; a compiler without them is told so
# once, here, rather than in pages of errors.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("
  #include <format>
  #include <iostream>
  #include <syncstream>
  int main() { std::osyncstream(std::cerr) << std::format(\"{}\", 1); }"
  QLN_COMPILER_HAS_FORMAT)
if(NOT QLN_COMPILER_HAS_FORMAT)
  message(FATAL_ERROR
    "${CMAKE_CXX_COMPILER} (${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}) has no "
    "<format> or no <syncstream>. On Debian 12 install the packages clang-19, libc++-19-dev and "
    "libc++abi-19-dev, and configure with:\n"
    "  cmake --preset release\n"
    "Elsewhere GCC 13 or later works: cmake -B build -DCMAKE_CXX_COMPILER=g++-13")
endif()
