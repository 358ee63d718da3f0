# The programs as they are given away, linked twice of the same object files: for the Debian package
# with all but libc inside, and static, below static/, for every other Linux. The linker writes a map
# beside each program, from which the bill of materials is made.
option(QLN_STATIC_TOO "Link each program a second time, as a static one" OFF)
if(NOT QLN_STATIC_TOO)
  return()
endif()

foreach(program qln-fp-cleaner qln-fp-tree)
  target_link_options(${program} PRIVATE
    -static-libstdc++ -static-libgcc LINKER:-Map=${PROJECT_BINARY_DIR}/${program}.map)

  add_executable(${program}-static $<TARGET_OBJECTS:${program}>)
  target_link_libraries(${program}-static PRIVATE ${program}-core)
  target_link_options(${program}-static PRIVATE
    -static-pie LINKER:-Map=${PROJECT_BINARY_DIR}/static/${program}.map)
  set_target_properties(${program}-static PROPERTIES LINKER_LANGUAGE CXX
    OUTPUT_NAME ${program} RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/static)
  # Takes the place of the other one when it is installed after it; the Debian package is without.
  install(TARGETS ${program}-static RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    COMPONENT static EXCLUDE_FROM_ALL)
endforeach()
