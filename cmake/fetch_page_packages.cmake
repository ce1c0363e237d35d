# Fetches packages of the page with npm: cmake -DNPM= -DPAGE= -DFOLDER= [-DDEV=ON] -P this file.
#
# PAGE has package.json and package-lock.json; FOLDER gets node_modules. With DEV also those that
# only checks and tests need. No script of a package is run.
set(omit --omit=dev)
if(DEV)
  set(omit)
endif()

# Older ones do not know this lock file and would fetch other versions.
set(oldest 7)
execute_process(COMMAND ${NPM} --version OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
if(version VERSION_LESS oldest)
  message(
    FATAL_ERROR
      "npm ${oldest} or newer is needed; ${NPM} is \"${version}\". Put a newer one first in PATH and "
      "remove CMakeCache.txt.")
endif()

# The bundler's package asks for a newer node than some systems have, and would be left out there.
# It is a program of its own and is never run by node.
set(claimed_node --node-version=20.0.0)

file(MAKE_DIRECTORY ${FOLDER})
file(COPY ${PAGE}/package.json ${PAGE}/package-lock.json DESTINATION ${FOLDER})
execute_process(
  COMMAND ${NPM} ci ${omit} ${claimed_node} --prefer-offline --ignore-scripts --no-audit --no-fund
          --loglevel=error
  WORKING_DIRECTORY ${FOLDER}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(
    FATAL_ERROR
      "npm could not fetch the libraries of the page (its message stands above). It asks the "
      "registry in its own settings. Without a network, copy the folder "
      "companion/page/node_modules of a build folder from another machine and configure "
      "with -DKORVEX_NODE_MODULES=FOLDER, or build the solver alone with -DKORVEX_COMPANION=OFF.")
endif()
