# Run by cpack over the installed files before it packs them: adds what only a Debian package has,
# and says what it needs.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})  # From which cpack takes the times of all files, too.
  message(FATAL_ERROR "Set SOURCE_DATE_EPOCH to the last commit's time, as scripts/package does.")
endif()
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
set(documents ${root}/share/doc/${CPACK_PACKAGE_NAME})

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # Of SOURCE_DATE_EPOCH.
file(WRITE ${documents}/changelog.Debian
"${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * See changelog.gz.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
file(COPY_FILE ${documents}/CHANGELOG.md ${documents}/changelog)  # README links to the first.
set(packaging ${CMAKE_CURRENT_LIST_DIR}/../packaging)
file(COPY ${packaging}/copyright DESTINATION ${documents})
file(MAKE_DIRECTORY ${root}/share/lintian/overrides)
file(COPY_FILE ${packaging}/lintian-overrides
  ${root}/share/lintian/overrides/${CPACK_PACKAGE_NAME})

file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)

file(GLOB to_compress ${documents}/changelog* ${root}/share/man/man1/*)
execute_process(COMMAND gzip -9n ${to_compress} COMMAND_ERROR_IS_FATAL ANY)

# The programs need nothing but libc. dpkg-shlibdeps would know its version only for processors that
# are set up on this machine; the highest version of a symbol tells it for all.
file(GLOB programs ${root}/bin/*)
execute_process(COMMAND readelf --version-info --wide ${programs}
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "GLIBC_[0-9.]+" versions ${symbols})
list(SORT versions COMPARE NATURAL ORDER DESCENDING)
list(GET versions 0 newest)
string(REPLACE GLIBC_ "" newest ${newest})
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= ${newest})")
