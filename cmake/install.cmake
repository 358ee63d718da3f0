# What `cmake --install` puts where, below the prefix.
include(GNUInstallDirs)

set(bash_completions_dir ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
set(zsh_completions_dir ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
set(fish_completions_dir ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
install(CODE "set(folders ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_MANDIR}/man1
  ${CMAKE_INSTALL_DOCDIR} ${bash_completions_dir} ${zsh_completions_dir} ${fish_completions_dir})")
install(SCRIPT cmake/make_readable_folders.cmake)

install(TARGETS qln-fp-cleaner qln-fp-tree RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

foreach(program qln-fp-cleaner qln-fp-tree)
  install(FILES man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES completions/${program}.bash RENAME ${program}
    DESTINATION ${bash_completions_dir})
  install(FILES completions/_${program} DESTINATION ${zsh_completions_dir})
  install(FILES completions/${program}.fish DESTINATION ${fish_completions_dir})
endforeach()

# As they lie in the sources, so that their links hold.
install(FILES README.md ARCHITECTURE.md CHANGELOG.md CONTRIBUTING.md RELEASING.md SECURITY.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY bench docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN .clang-format EXCLUDE)
