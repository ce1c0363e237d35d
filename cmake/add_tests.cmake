# Registers the tests of a program of GoogleTest: one by one, so that ctest can choose among them.
#
# Where starting a process costs more than most tests, in Windows' emulation and under a sanitizer,
# the program runs in a few parts side by side.
include(GoogleTest)

function(korvex_add_tests program timeout)
  if(WIN32)
    set(parts 2)
  elseif(KORVEX_SANITIZE)
    set(parts 6)
  else()
    gtest_discover_tests(${program} DISCOVERY_TIMEOUT 60)
    return()
  endif()
  foreach(part RANGE 1 ${parts})
    math(EXPR index "${part} - 1")
    add_test(NAME ${program}.${part} COMMAND ${program})
    # A message box that no test expects waits for ever.
    set_tests_properties(
      ${program}.${part}
      PROPERTIES TIMEOUT ${timeout}
                 ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()
