# Run at installation, before all else: makes the `folders` so that others can read them, whatever
# the umask is. Those that exist stay as they are.
foreach(folder IN LISTS folders)
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE)
  set(missing)
  set(path $ENV{DESTDIR}${folder})
  while(NOT EXISTS ${path})
    list(PREPEND missing ${path})
    cmake_path(GET path PARENT_PATH path)
  endwhile()
  foreach(path IN LISTS missing)
    file(MAKE_DIRECTORY ${path})
    file(CHMOD ${path} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
      GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endforeach()
endforeach()
