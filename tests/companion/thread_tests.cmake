# The tests of the companion that have threads, for the thread sanitizer. Most call functions in
# this process; KvxThreads runs kvx, which has the sanitizer too, and whose status a race changes. A
# new file with such tests goes here as well; CMakePresets.json chooses among them by their names.
add_executable(
  kvx_thread_tests
  audit/reactions_test.cpp
  audit/stale_results_test.cpp
  commands/plate_runs_posix.cpp
  commands/threads_program_test.cpp
  commands/watched_call_posix_test.cpp
  engine/factor_folder_test.cpp
  engine/locked_folder_test.cpp
  engine/result_folder_test.cpp
  engine/solve_sparse_test.cpp
  engine/solve_together_test.cpp
  sparse/free_matrix_test.cpp
  support/folder_bytes.cpp
  support/good_models.cpp
  support/solved_examples.cpp)
target_include_directories(kvx_thread_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(
  kvx_thread_tests
  PRIVATE KORVEX_EXAMPLES="${PROJECT_SOURCE_DIR}/examples"
          KORVEX_PROGRAM="$<TARGET_FILE:korvex_program>"
          KVX_PROGRAM="$<TARGET_FILE:kvx_program>")
target_link_libraries(kvx_thread_tests PRIVATE kvx_commands korvex_test_support GTest::gtest_main)
add_dependencies(kvx_thread_tests kvx_program korvex_program)
gtest_discover_tests(
  kvx_thread_tests
  DISCOVERY_TIMEOUT 60
  PROPERTIES TIMEOUT 300 ENVIRONMENT
             "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/thread_sanitizer.supp")
