# Everything this project builds on is found on the system; what is missing is
# named with the Debian package that brings it.
find_package(Threads REQUIRED)

find_package(nlohmann_json 3.11 QUIET)
if(NOT nlohmann_json_FOUND)
  message(FATAL_ERROR
    "nlohmann JSON 3.11 or later is missing; the package nlohmann-json3-dev brings it.")
endif()

find_path(ARGS_INCLUDE_DIR args.hxx)
if(NOT ARGS_INCLUDE_DIR)
  message(FATAL_ERROR "The header args.hxx is missing; the package libargs-dev brings it.")
endif()
add_library(args::args INTERFACE IMPORTED)
target_include_directories(args::args SYSTEM INTERFACE ${ARGS_INCLUDE_DIR})

if(QLN_BUILD_TESTS)
  find_path(GTEST_SOURCE_DIR src/gtest-all.cc HINTS /usr/src/googletest/googletest
    NO_CMAKE_FIND_ROOT_PATH)  # Sources are of no architecture.
  if(NOT GTEST_SOURCE_DIR)
    message(FATAL_ERROR
      "The GoogleTest sources are missing; the package googletest brings them. "
      "To build without the tests: -DQLN_BUILD_TESTS=OFF")
  endif()
  # The system's Python, because Debian's Python packages serve no other.
  find_program(QLN_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
  if(NOT QLN_PYTHON)
    message(FATAL_ERROR
      "Python 3 is missing; the package python3 brings it. "
      "To build without the tests: -DQLN_BUILD_TESTS=OFF")
  endif()
endif()
