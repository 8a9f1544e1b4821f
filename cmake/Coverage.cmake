# zqm_measure_coverage(TARGET...): with ZQM_COVERAGE these count which of their lines and branches run
# (scripts/coverage). Not the whole build: the engine may write nowhere at its end, and tests aren't what is measured.
option(ZQM_COVERAGE "Count which lines and branches of plugin and platform library run" OFF)
function(zqm_measure_coverage)
  if(NOT ZQM_COVERAGE)
    return()
  endif()
  foreach(target IN LISTS ARGN)
    # Counts are atomic since the platform library has threads of its callers' in it.
    target_compile_options(${target} PRIVATE --coverage -fprofile-abs-path -fprofile-update=atomic)
  endforeach()
endfunction()
if(ZQM_COVERAGE)
  # Whatever links one of their objects needs the library that writes the counts down.
  add_link_options(--coverage)
endif()
