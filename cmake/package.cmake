# The packages that users get, made by the target "package": the programs, the examples and pages.
#
# Windows: a zip that is unpacked anywhere, everything side by side. Elsewhere: a tar.gz, and where
# Debian's tools are a .deb, with bin/ and share/doc/korvex/.
if(WIN32)
  set(program_folder .)
  set(pages_folder .)
else()
  include(GNUInstallDirs)
  set(program_folder ${CMAKE_INSTALL_BINDIR})
  set(pages_folder ${CMAKE_INSTALL_DOCDIR})
endif()

install(TARGETS korvex_program RUNTIME DESTINATION ${program_folder})
if(KORVEX_COMPANION)
  install(TARGETS kvx_program RUNTIME DESTINATION ${program_folder})
  if(NOT WIN32)
    install(FILES docs/man/kvx.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES companion/completion/kvx
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  endif()
endif()
# The page that they begin with, and those that it leads to.
install(FILES README.md ARCHITECTURE.md CONTRIBUTING.md CHANGELOG.md DESTINATION ${pages_folder})
install(
  DIRECTORY docs examples
  DESTINATION ${pages_folder}
  PATTERN __pycache__ EXCLUDE
  PATTERN man EXCLUDE)

# An example to open in a browser: the deck panel, solved, as kvx view shows it. A program for
# another system cannot be asked; then the page is that of KORVEX_NATIVE_COMPANION.
set(KORVEX_NATIVE_COMPANION
    ""
    CACHE FILEPATH "kvx of this system, which makes the page in the packages for another one")
set(page_maker $<TARGET_FILE:kvx_program>)
if(CMAKE_CROSSCOMPILING)
  set(page_maker ${KORVEX_NATIVE_COMPANION})
endif()
if(KORVEX_COMPANION AND page_maker)
  set(example_page ${PROJECT_BINARY_DIR}/view.html)
  add_custom_command(
    OUTPUT ${example_page}
    # kvx view replaces nothing but its own pages, and those of an earlier version may look different.
    COMMAND ${CMAKE_COMMAND} -E rm -f ${example_page}
    COMMAND ${page_maker} view stiffened-panel -o ${example_page}
    DEPENDS ${page_maker} ${PROJECT_SOURCE_DIR}/examples/stiffened-panel/fem_solving.txt
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/examples
    COMMENT "Making the page of the deck panel"
    VERBATIM)
  add_custom_target(example_page ALL DEPENDS ${example_page})
  install(FILES ${example_page} DESTINATION ${pages_folder}/examples/stiffened-panel)
elseif(KORVEX_COMPANION)
  message(STATUS "The packages get no page of an example: KORVEX_NATIVE_COMPANION is not set")
endif()

set(CPACK_PACKAGE_NAME korvex)
set(CPACK_PACKAGE_VENDOR "The Korvex developers")
set(CPACK_PACKAGE_CONTACT "The Korvex developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Linear static analysis of thin-walled structures")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_SYSTEM_NAME win64)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR TGZ)
  find_program(KORVEX_DPKG_DEB dpkg-deb)
  if(KORVEX_DPKG_DEB)
    list(APPEND CPACK_GENERATOR DEB)
  endif()
endif()

# The libraries of the .deb with their versions, where the tools that find them are there.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
# They do not see what kvx loads when it needs it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6, libstdc++6, zlib1g${kvx_sparse_packages}")
find_program(KORVEX_DPKG_SHLIBDEPS dpkg-shlibdeps)
find_program(KORVEX_FILE file)
if(KORVEX_DPKG_SHLIBDEPS AND KORVEX_FILE)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()

include(CPack)
