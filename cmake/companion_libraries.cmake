# The libraries of the companion program kvx, as the target kvx_libraries, and zlib, as ZLIB::ZLIB.
#
# Those of headers alone are taken from the system, by links in a folder of the build: they serve
# every target, but a compiler for another system must not search the folder that they lie in.

set(KORVEX_COPYRIGHT_FILES
    /usr/share/doc
    CACHE PATH "The folder with PACKAGE/copyright of the libraries in kvx")

set(kvx_include ${CMAKE_CURRENT_BINARY_DIR}/libraries/include)
set(kvx_missing)
set(kvx_license_texts)

# Adds the licence of a library, which comes in the Debian package PACKAGE, to those kvx shows.
function(kvx_add_license name package)
  set(copyright ${KORVEX_COPYRIGHT_FILES}/${package}/copyright)
  if(NOT EXISTS ${copyright})
    message(FATAL_ERROR "kvx shows the licence of ${name}, but there is no file ${copyright}. Install the Debian "
                        "package ${package}, or set KORVEX_COPYRIGHT_FILES.")
  endif()
  file(READ ${copyright} text)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${copyright})
  set(kvx_license_texts "${kvx_license_texts}
    R\"licence(
---- ${name} ----

${text})licence\"," PARENT_SCOPE)
endfunction()

# Finds the library whose main header is FOLDER/HEADER in the Debian package PACKAGE.
function(kvx_use_library name package folder header)
  find_path(
    KVX_${folder}_INCLUDE ${folder}/${header}
    HINTS /usr/include
    NO_CMAKE_FIND_ROOT_PATH)
  mark_as_advanced(KVX_${folder}_INCLUDE)
  if(NOT KVX_${folder}_INCLUDE)
    set(kvx_missing "${kvx_missing} ${package}" PARENT_SCOPE)
    return()
  endif()
  file(MAKE_DIRECTORY ${kvx_include})
  file(CREATE_LINK ${KVX_${folder}_INCLUDE}/${folder} ${kvx_include}/${folder} SYMBOLIC)
  kvx_add_license("${name}" ${package})
  set(kvx_license_texts "${kvx_license_texts}" PARENT_SCOPE)
endfunction()

kvx_use_library(CLI11 libcli11-dev CLI CLI.hpp)
kvx_use_library("JSON for Modern C++" nlohmann-json3-dev nlohmann json.hpp)
# Not its usual header, toml.hpp: that one lies beside its folder.
kvx_use_library(toml11 libtoml11-dev toml parser.hpp)

# zlib is compiled: for Windows its library for that system, and the static one.
set(kvx_zlib_package zlib1g-dev)
if(MINGW)
  set(kvx_zlib_package libz-mingw-w64-dev)
  set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
endif()
find_package(ZLIB QUIET)
if(ZLIB_FOUND)
  kvx_add_license(zlib ${kvx_zlib_package})
else()
  set(kvx_missing "${kvx_missing} ${kvx_zlib_package}")
endif()

# The sparse engine: MUMPS for one machine, and METIS. MUMPS takes whatever BLAS the system has chosen;
# OpenBLAS makes it several times as fast as the plain one. There is none for Windows. The target
# kvx_sparse_headers is for a program that loads MUMPS when it needs it, kvx_sparse_libraries for one
# that is linked with it.
function(kvx_find_sparse name package header library)
  find_path(KVX_${name}_INCLUDE ${header} PATH_SUFFIXES mumps_seq mumps)
  find_library(KVX_${name}_LIBRARY ${library})
  mark_as_advanced(KVX_${name}_INCLUDE KVX_${name}_LIBRARY)
  if(NOT KVX_${name}_INCLUDE OR NOT KVX_${name}_LIBRARY)
    set(kvx_missing "${kvx_missing} ${package}" PARENT_SCOPE)
    return()
  endif()
  kvx_add_license(${name} ${package})
  set(kvx_license_texts "${kvx_license_texts}" PARENT_SCOPE)
endfunction()

if(NOT MINGW)
  kvx_find_sparse(MUMPS libmumps-seq-dev dmumps_c.h dmumps_seq)
  kvx_find_sparse(METIS libmetis-dev metis.h metis)
  # What MUMPS brings along, and a BLAS.
  kvx_find_sparse(OpenBLAS libopenblas-dev openblas_config.h openblas)
  # Its package has the number of its release in its name.
  file(GLOB kvx_scotch RELATIVE ${KORVEX_COPYRIGHT_FILES} ${KORVEX_COPYRIGHT_FILES}/libscotch-[0-9]*)
  if(kvx_scotch)
    list(GET kvx_scotch 0 kvx_scotch)
    kvx_add_license(SCOTCH ${kvx_scotch})
  endif()
endif()

if(kvx_missing)
  message(
    FATAL_ERROR
      "The companion program kvx needs these Debian packages:${kvx_missing}. "
      "Install them, or build the solver alone with -DKORVEX_COMPANION=OFF.")
endif()

file(CONFIGURE OUTPUT license_texts.cpp CONTENT
  "#include \"commands/license_texts.h\"\n\nconst char* const kvx::LicenseTexts[] = {@kvx_license_texts@\n    nullptr};\n"
  @ONLY)

add_library(kvx_libraries INTERFACE)
target_include_directories(kvx_libraries SYSTEM INTERFACE ${kvx_include})

if(NOT MINGW)
  # The same over MPI, for kvx-mpi, which is built where there are MPI and that MUMPS.
  find_package(MPI QUIET COMPONENTS CXX)
  find_library(KVX_RANK_MUMPS_LIBRARY dmumps_ptscotch)
  mark_as_advanced(KVX_RANK_MUMPS_LIBRARY)
  option(KORVEX_MPI "Build kvx-mpi where MPI and libmumps-ptscotch-dev are found" ON)
  if(KORVEX_MPI AND MPI_CXX_FOUND AND KVX_RANK_MUMPS_LIBRARY)
    add_library(kvx_rank_libraries INTERFACE)
    target_compile_definitions(kvx_rank_libraries INTERFACE OMPI_SKIP_MPICXX MPICH_SKIP_MPICXX)
    target_link_libraries(kvx_rank_libraries INTERFACE ${KVX_RANK_MUMPS_LIBRARY}
                                                       ${KVX_METIS_LIBRARY} MPI::MPI_CXX)
  endif()

  # MUMPS has its release in its name.
  get_filename_component(kvx_mumps_file ${KVX_MUMPS_LIBRARY} REALPATH)
  get_filename_component(kvx_mumps_name ${kvx_mumps_file} NAME)
  add_library(kvx_sparse_headers INTERFACE)
  target_include_directories(kvx_sparse_headers SYSTEM INTERFACE ${KVX_MUMPS_INCLUDE}
                                                                 ${KVX_METIS_INCLUDE})
  target_compile_definitions(kvx_sparse_headers INTERFACE KVX_MUMPS_FILE="${kvx_mumps_name}")
  target_link_libraries(kvx_sparse_headers INTERFACE ${KVX_METIS_LIBRARY})
  add_library(kvx_sparse_libraries INTERFACE)
  target_link_libraries(kvx_sparse_libraries INTERFACE kvx_sparse_headers ${KVX_MUMPS_LIBRARY})
  # What a package of the program asks for.
  string(REGEX MATCH "[0-9]+\\.[0-9]+" kvx_mumps_release ${kvx_mumps_file})
  set(kvx_sparse_packages ", libmumps-seq-${kvx_mumps_release}, libmetis5, libopenblas0" PARENT_SCOPE)
endif()
