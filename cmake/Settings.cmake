# What every target of the project shares: language level, warnings, sanitizers, where products go.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_OBJC_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
foreach(language IN ITEMS C CXX OBJC OBJCXX)
  set(CMAKE_${language}_VISIBILITY_PRESET hidden)
endforeach()
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# The products stand side by side, so that each finds the others without being installed.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

set(ZQM_SANITIZE "" CACHE STRING "Sanitizers for the whole build, as -fsanitize= takes them")
if(ZQM_SANITIZE)
  add_compile_options(-fsanitize=${ZQM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZQM_SANITIZE})
  # Half the time of unoptimised code, and stacks and lines of a mistake are still told; asserts stay.
  foreach(language IN ITEMS C CXX OBJC OBJCXX)
    set(CMAKE_${language}_FLAGS_RELWITHDEBINFO "-O1 -g1")
  endforeach()
endif()

# For coverage-guided fuzzing (fuzz/): every edge and comparison is told to libFuzzer. Programs that are not fuzzed
# link what tells nobody.
option(ZQM_FUZZ "Build the fuzz targets with libFuzzer, and all that they reach so that it leads that" OFF)
if(ZQM_FUZZ)
  add_compile_options(-O1 -g1 -fsanitize-coverage=trace-pc,trace-cmp)
  add_library(zqm_uncounted_edges SHARED "${PROJECT_SOURCE_DIR}/fuzz/uncounted_edges.cpp")
  target_compile_options(zqm_uncounted_edges PRIVATE -fno-sanitize=all)
  link_libraries($<BUILD_INTERFACE:zqm_uncounted_edges>)
  set(ZQM_FUZZ_LIBRARY_FOLDER "$ORIGIN")
endif()

# Linked privately by each of our own targets; never reaches third-party code.
add_library(zqm_warnings INTERFACE)
target_compile_options(zqm_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# A method has to name all its parameters; the selector tells whether it needs them.
target_compile_options(zqm_warnings INTERFACE $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-Wno-unused-parameter>)
# What GCC has no warnings for: messages to the wrong object, and what the deployment target lacks.
foreach(language IN ITEMS OBJC OBJCXX)
  target_compile_options(zqm_warnings INTERFACE
    "$<$<COMPILE_LANG_AND_ID:${language},Clang,AppleClang>:-Wundeclared-selector;-Wreceiver-forward-class;-Wstrict-selector-match;-Woverriding-method-mismatch>")
endforeach()
foreach(language IN ITEMS C CXX OBJC OBJCXX)
  target_compile_options(zqm_warnings INTERFACE
    "$<$<COMPILE_LANG_AND_ID:${language},Clang,AppleClang>:-Wunguarded-availability>")
endforeach()
