# The Debian package, made by `cpack` in builds of the presets "package" and "package-arm64";
# scripts/package does it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})  # By itself it leaves out the last part.
set(CPACK_PACKAGE_CONTACT "Quillon FP Cleaner developers <qln-fp-cleaner@example.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "remove suppression markers that silence nothing any more")
set(CPACK_PACKAGE_DESCRIPTION
  "Comments such as //-V501 silence false alarms of the Quillon analyzer on their
source lines, and stay when there is nothing left to silence. qln-fp-cleaner
merges the analyzer core's reports of such markers, keeps what every build
configuration agrees on, and removes these markers from the sources, or writes
a report of them for the IDE plugin or the blame notifier.
.
Its companion qln-fp-tree checks reports before a run, tells why markers go or
stay, shows what a run would change, and takes a run back.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL aarch64)  # Else it takes this machine's.
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
endif()
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package_files.cmake)
include(CPack)
