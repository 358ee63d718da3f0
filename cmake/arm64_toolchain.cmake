# Builds for 64-bit ARM with Debian's clang, against the ARM packages that the scripts unpack below
# build/; what is built runs in an emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
cmake_path(SET CMAKE_SYSROOT NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/arm64-sysroot)

set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-gnu)
set(CMAKE_AR aarch64-linux-gnu-ar CACHE STRING "")
set(CMAKE_RANLIB aarch64-linux-gnu-ranlib CACHE STRING "")
set(CMAKE_STRIP aarch64-linux-gnu-strip CACHE STRING "")
# With the loader named; told of another root instead, the emulator would look there for all paths.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static ${CMAKE_SYSROOT}/lib/ld-linux-aarch64.so.1
  --library-path ${CMAKE_SYSROOT}/lib/aarch64-linux-gnu)

# Clang looks for its C++ library beside itself, where this machine's is. Told another place, it
# takes no notice of -stdlib, and says so.
add_compile_options(-stdlib++-isystem ${CMAKE_SYSROOT}/usr/lib/llvm-19/include/c++/v1
  -Wno-unused-command-line-argument)
add_link_options(-L${CMAKE_SYSROOT}/usr/lib/llvm-19/lib)

# Programs are this machine's, all else is the other's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
