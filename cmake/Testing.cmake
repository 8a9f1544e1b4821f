option(BUILD_TESTING "Build the tests" ON)
if(BUILD_TESTING)
  enable_testing()
  find_package(GTest REQUIRED)
endif()

# The environment of every test, whatever shell starts it. The suppression files name third-party causes
# only; what they are is said in them.
set(ZQM_TEST_ENVIRONMENT "LC_ALL=C.UTF-8")
if(ZQM_SANITIZE)
  foreach(sanitizer IN ITEMS asan lsan ubsan)
    set(options_of_${sanitizer} "")
    file(GLOB suppressions CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/sanitizers/${sanitizer}.supp")
    if(suppressions)
      set(options_of_${sanitizer} ":suppressions=\"${suppressions}\"")
    endif()
  endforeach()
  # Third-party code without frame pointers hides its callers from the fast unwinder, and suppressions go by callers.
  list(APPEND ZQM_TEST_ENVIRONMENT
    "ASAN_OPTIONS=detect_leaks=1:fast_unwind_on_malloc=0:strict_string_checks=1:strict_init_order=1${options_of_asan}"
    "LSAN_OPTIONS=print_suppressions=0${options_of_lsan}"
    "UBSAN_OPTIONS=print_stacktrace=1${options_of_ubsan}")
endif()

# A test counts as this many of the jobs that ctest runs at a time, and one that mostly waits as one job, so
# that four jobs a processor keep the processors busy.
set(ZQM_JOBS_PER_TEST 4)

# zqm_add_test(NAME SOURCES file... [LIBRARIES library...] [TIMEOUT seconds] [SHARDS number] [WAITS]
#              [RUN_SERIAL])
# One GoogleTest program, built with the project's warnings and run as one test, or as several that share
# its cases and may run at the same time. WAITS: it mostly waits, as for sound in real time. RUN_SERIAL: no
# other test runs beside it. A test that skips itself has not passed.
function(zqm_add_test name)
  if(NOT BUILD_TESTING)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 arg "RUN_SERIAL;WAITS" "TIMEOUT;SHARDS" "SOURCES;LIBRARIES")
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  if(NOT arg_SHARDS)
    set(arg_SHARDS 1)
  endif()
  set(jobs ${ZQM_JOBS_PER_TEST})
  if(arg_WAITS)
    set(jobs 1)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE zqm_warnings ${arg_LIBRARIES} GTest::gmock GTest::gtest GTest::gtest_main)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  math(EXPR last "${arg_SHARDS} - 1")
  foreach(shard RANGE ${last})
    set(test ${name})
    if(last GREATER 0)
      math(EXPR number "${shard} + 1")
      set(test "${name}_${number}_of_${arg_SHARDS}")
    endif()
    add_test(NAME ${test} COMMAND ${name})
    set_tests_properties(${test} PROPERTIES
      TIMEOUT ${arg_TIMEOUT}
      PROCESSORS ${jobs}
      RUN_SERIAL ${arg_RUN_SERIAL}
      FAIL_REGULAR_EXPRESSION "\\[  SKIPPED \\]"
      ENVIRONMENT "${ZQM_TEST_ENVIRONMENT};GTEST_TOTAL_SHARDS=${arg_SHARDS};GTEST_SHARD_INDEX=${shard}")
  endforeach()
endfunction()
