# The page of `kvx view`: the sources in companion/view/page, bundled into one HTML text, which is
# compiled into the program.
#
# The packages are those of package-lock.json, fetched by npm once for each build folder. No script
# of theirs is run: the bundler is a program of its own and needs no node.

set(KORVEX_NODE_MODULES
    ""
    CACHE PATH "A node_modules folder with the packages of the page; empty: npm fetches them")

set(page_source ${PROJECT_SOURCE_DIR}/companion/view/page)
set(page_build ${CMAKE_CURRENT_BINARY_DIR}/page)
set(page_lock ${page_source}/package-lock.json)

# Stops where the folder MODULES has not the version of PACKAGE that package-lock.json names.
function(check_page_package modules package)
  file(READ ${page_lock} lock)
  string(JSON wanted GET "${lock}" packages node_modules/${package} version)
  set(found "is not there")
  if(EXISTS ${modules}/${package}/package.json)
    file(READ ${modules}/${package}/package.json description)
    string(JSON version GET "${description}" version)
    set(found "has version ${version}")
  endif()
  if(NOT version STREQUAL wanted)
    message(
      FATAL_ERROR
        "The page of kvx view needs ${package} ${wanted}; in KORVEX_NODE_MODULES, ${modules}, it "
        "${found}. Give the folder companion/page/node_modules of another build folder, or leave "
        "KORVEX_NODE_MODULES empty: npm then fetches the packages.")
  endif()
endfunction()

if(KORVEX_NODE_MODULES)
  set(page_modules ${KORVEX_NODE_MODULES})
else()
  find_program(KORVEX_NPM npm)
  if(NOT KORVEX_NPM)
    message(
      FATAL_ERROR
        "The page of kvx view needs npm, which fetches its libraries. Install the Debian package "
        "npm, or set KORVEX_NODE_MODULES to a folder that has them, or build the solver alone with "
        "-DKORVEX_COMPANION=OFF.")
  endif()
  set(page_modules ${page_build}/node_modules)
  add_custom_command(
    OUTPUT ${page_build}/fetched
    COMMAND ${CMAKE_COMMAND} -DNPM=${KORVEX_NPM} -DPAGE=${page_source} -DFOLDER=${page_build} -P
            ${PROJECT_SOURCE_DIR}/cmake/fetch_page_packages.cmake
    COMMAND ${CMAKE_COMMAND} -E touch ${page_build}/fetched
    DEPENDS ${page_source}/package.json ${page_lock}
            ${PROJECT_SOURCE_DIR}/cmake/fetch_page_packages.cmake
    COMMENT "Fetching the libraries of the page"
    VERBATIM)
endif()

set(page_processor x64)
if(CMAKE_HOST_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(page_processor arm64)
endif()
set(page_bundler ${page_modules}/@esbuild/linux-${page_processor}/bin/esbuild)
if(KORVEX_NODE_MODULES)
  check_page_package(${page_modules} three)
  check_page_package(${page_modules} @esbuild/linux-${page_processor})
endif()

file(GLOB_RECURSE page_files CONFIGURE_DEPENDS ${page_source}/src/*.ts)
set(page_template ${CMAKE_CURRENT_BINARY_DIR}/page_template.cpp)
add_custom_command(
  OUTPUT ${page_template}
  # It finds three beside the sources or where NODE_PATH leads.
  COMMAND
    ${CMAKE_COMMAND} -E env NODE_PATH=${page_modules} ${page_bundler} ${page_source}/src/main.ts
    --bundle --minify --format=iife --target=es2022 --legal-comments=eof --log-level=warning
    --tsconfig-raw={} --outfile=${page_build}/page.js
  COMMAND ${page_bundler} ${page_source}/style.css --minify --log-level=warning
          --outfile=${page_build}/page.css
  COMMAND
    ${CMAKE_COMMAND} -DINDEX=${page_source}/index.html -DSTYLE=${page_build}/page.css
    -DSCRIPT=${page_build}/page.js -DLICENSE=${page_modules}/three/LICENSE -DOUTPUT=${page_template}
    -P ${PROJECT_SOURCE_DIR}/cmake/make_page_template.cmake
  DEPENDS ${page_files} ${page_source}/index.html ${page_source}/style.css
          ${PROJECT_SOURCE_DIR}/cmake/make_page_template.cmake
          $<$<BOOL:${KORVEX_NODE_MODULES}>:${page_bundler}>
          $<$<NOT:$<BOOL:${KORVEX_NODE_MODULES}>>:${page_build}/fetched>
  COMMENT "Bundling the page of kvx view"
  VERBATIM)
