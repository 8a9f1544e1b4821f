option(BUILD_TESTING "Build the tests" ON)
if(BUILD_TESTING)
  enable_testing()
  find_package(GTest REQUIRED)
endif()

# The environment of every test, whatever shell starts it. The suppression files name third-party causes
# only; what they are is said in them.
set(ZQM_TEST_ENVIRONMENT "LC_ALL=C.UTF-8")
# What no test may print. What a sanitizer finds in an engine ends that alone, and its host has another one.
set(ZQM_TEST_FAILURES "")
if(ZQM_SANITIZE)
  foreach(sanitizer IN ITEMS asan lsan tsan ubsan)
    set(options_of_${sanitizer} "")
    file(GLOB suppressions CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/sanitizers/${sanitizer}.supp")
    if(suppressions)
      set(options_of_${sanitizer} ":suppressions=\"${suppressions}\"")
    endif()
  endforeach()
  list(APPEND ZQM_TEST_FAILURES "ERROR: [A-Za-z]+Sanitizer" "runtime error: " "WARNING: ThreadSanitizer")
  list(APPEND ZQM_TEST_ENVIRONMENT
    "LSAN_OPTIONS=print_suppressions=0${options_of_lsan}"
    "TSAN_OPTIONS=halt_on_error=1${options_of_tsan}"
    "UBSAN_OPTIONS=print_stacktrace=1${options_of_ubsan}")
  # GCC 12's search for leaks takes a block of thread-local variables that lies 16 bytes behind the start of a page for
  # one of glibc 2.19's and what stands before it for its head, and dies of that
  # (tests/sanitizers/thread_local_test.cpp). It finds the blocks without knowing them, as memory that others point to.
  # The options of a single program, by its name, count more: the environment of the command is a test's.
  string(CONCAT ZQM_ASAN_OPTIONS
    "detect_leaks=1:strict_string_checks=1:strict_init_order=1:malloc_context_size=24:intercept_tls_get_addr=0"
    "${options_of_asan}"
    ":include_if_exists=\"${PROJECT_SOURCE_DIR}/tests/sanitizers/%b.options\"")
endif()

# GCC's sanitizer for addresses finds the callers of allocations by what is part of every program here (its head says
# why). It stands before libgcc's.
if(BUILD_TESTING AND ZQM_SANITIZE MATCHES "address" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_library(zqm_callers OBJECT "${PROJECT_SOURCE_DIR}/tests/sanitizers/callers.c")
  target_compile_definitions(zqm_callers PRIVATE _GNU_SOURCE)
  target_compile_options(zqm_callers PRIVATE -fno-sanitize=all -O2)
  target_link_libraries(zqm_callers PRIVATE zqm_warnings)
  set(is_program "$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>")
  link_libraries("$<${is_program}:zqm_callers>")
  foreach(function IN ITEMS _Unwind_Backtrace _Unwind_GetIP)
    add_link_options("$<${is_program}:LINKER:--export-dynamic-symbol=${function}>")
  endforeach()
endif()

# Third-party code without frame pointers hides its callers from the fast unwinder, and what is suppressed of
# Cocoa's goes by callers, 22 of them at most: so 24 are noted of each allocation, and not 30, which take longer.
# Programs without Cocoa spend most of their time in the slow one for nothing. Engines do as their hosts: those that
# are much faster than these have said all before a test can stop them.
set(ZQM_FAST_UNWINDING 0)

# A test counts as this many of the jobs that ctest runs at a time, and one that mostly waits as one job, so
# that four jobs a processor keep the processors busy.
set(ZQM_JOBS_PER_TEST 4)

# LLVM's linker takes half of the time that GNU's does, for nearly 200 programs of a test each. What is shipped is linked
# as everything of Debian's is.
find_program(ZQM_TEST_LINKER ld.lld PATHS /usr/lib/llvm-14/bin)
set(ZQM_TEST_LINK_OPTIONS "")
if(ZQM_TEST_LINKER AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  cmake_path(GET ZQM_TEST_LINKER PARENT_PATH folder)
  set(ZQM_TEST_LINK_OPTIONS -fuse-ld=lld "-B${folder}")
endif()

# zqm_add_test(NAME SOURCES file... [LIBRARIES library...] [TIMEOUT seconds] [SHARDS number] [WAITS]
#              [RUN_SERIAL] [WITH_SIBLING] [MAY_SKIP])
# One GoogleTest program, built with the project's warnings and run as one test, or as several that share
# its cases and may run at the same time. WAITS: it mostly waits, as for sound in real time. RUN_SERIAL: no
# other test runs beside it. WITH_SIBLING: all of it runs twice, the second time with the family's library for
# Foundation's classes beside the plugin (tests/support/sibling_library.h), since what the plugin does depends on
# whether there is one; for every program whose hosts load the plugin. A test that skips itself has
# failed; MAY_SKIP: it is reported as skipped, for what not every kernel has.
function(zqm_add_test name)
  if(NOT BUILD_TESTING)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 arg "MAY_SKIP;RUN_SERIAL;WAITS;WITH_SIBLING" "TIMEOUT;SHARDS" "SOURCES;LIBRARIES")
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
  target_link_options(${name} PRIVATE ${ZQM_TEST_LINK_OPTIONS})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_precompile_headers(${name} REUSE_FROM zqm_test_prelude)
  # GoogleTest is C++'s.
  set(not_cpp ${arg_SOURCES})
  list(FILTER not_cpp INCLUDE REGEX "\\.[cm]$")
  set_source_files_properties(${not_cpp} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  # Where a library wants other macros than they were compiled with, these headers are read as they are.
  set_target_properties(${name} PROPERTIES
    PCH_WARN_INVALID OFF
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  set(runs ${name})
  set(sibling_of_${name} "")
  if(arg_WITH_SIBLING)
    list(APPEND runs ${name}_with_sibling)
    set(sibling_of_${name}_with_sibling "$<TARGET_FILE:ZQMFoundation>")
    add_dependencies(${name} ZQMFoundation)
  endif()
  set(failures ${ZQM_TEST_FAILURES})
  set(command ${name})
  if(arg_MAY_SKIP)
    set(command "${PROJECT_SOURCE_DIR}/tests/may-skip" "$<TARGET_FILE:${name}>" ${failures})
  else()
    list(APPEND failures "\\[  SKIPPED \\]")
  endif()
  math(EXPR last "${arg_SHARDS} - 1")
  foreach(run IN LISTS runs)
    foreach(shard RANGE ${last})
      set(test ${run})
      if(last GREATER 0)
        math(EXPR number "${shard} + 1")
        set(test "${run}_${number}_of_${arg_SHARDS}")
      endif()
      add_test(NAME ${test} COMMAND ${command})
      set(environment ${ZQM_TEST_ENVIRONMENT}
        "ASAN_OPTIONS=fast_unwind_on_malloc=${ZQM_FAST_UNWINDING}:${ZQM_ASAN_OPTIONS}"
        "GTEST_TOTAL_SHARDS=${arg_SHARDS}"
        "GTEST_SHARD_INDEX=${shard}"
        "ZQM_SIBLING_LIBRARY=${sibling_of_${run}}")
      set_tests_properties(${test} PROPERTIES
        TIMEOUT ${arg_TIMEOUT}
        PROCESSORS ${jobs}
        RUN_SERIAL ${arg_RUN_SERIAL}
        FAIL_REGULAR_EXPRESSION "${failures}"
        ENVIRONMENT "${environment}")
      if(arg_MAY_SKIP)
        set_tests_properties(${test} PROPERTIES SKIP_RETURN_CODE 77)
      endif()
    endforeach()
  endforeach()
endfunction()

# A plugin of the tests' own, from one source.
function(zqm_add_test_plugin name source)
  add_library(${name} MODULE ${source})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE zqm_warnings)
  set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests" PREFIX "")
endfunction()

# A test program that finds the platform library, and beside it another engine, in a folder of its own.
function(zqm_use_library_of test folder)
  file(MAKE_DIRECTORY "${folder}")
  get_target_property(version zqmplatform SOVERSION)
  set(library "libzqmplatform.so.${version}")
  file(CREATE_LINK "${CMAKE_BINARY_DIR}/${library}" "${folder}/${library}" SYMBOLIC)
  set_target_properties(${test} PROPERTIES SKIP_BUILD_RPATH ON)
  target_link_options(${test} PRIVATE "LINKER:-rpath,${folder}")
endfunction()
