# ccache, where it is installed: the presets share most of their objects, and so do clones of the
# repository. Paths are hashed relative to the build, so that another folder finds the same objects.
# Whoever sets CMAKE_CXX_COMPILER_LAUNCHER has chosen.
if(NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(KORVEX_CCACHE ccache)
  mark_as_advanced(KORVEX_CCACHE)
  if(KORVEX_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
                                    CCACHE_NOHASHDIR=1 ${KORVEX_CCACHE})
  endif()
endif()
