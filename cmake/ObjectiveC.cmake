# `zqm::objc` is what a target with Objective-C sources links: Foundation and the flags of its runtime.
# On macOS that is the system's own; elsewhere GNUstep's on GCC's runtime, where an exception of
# Objective-C unwinds C++ frames and the other way round only with native exceptions.

add_library(zqm_objc INTERFACE)
add_library(zqm::objc ALIAS zqm_objc)

if(APPLE)
  target_link_libraries(zqm_objc INTERFACE "-framework Foundation" objc)
else()
  find_path(GNUSTEP_INCLUDE_DIR Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)
  find_library(GNUSTEP_BASE_LIBRARY gnustep-base REQUIRED)
  target_include_directories(zqm_objc SYSTEM INTERFACE "${GNUSTEP_INCLUDE_DIR}")
  target_compile_options(zqm_objc INTERFACE
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fobjc-exceptions;-fexceptions;-fconstant-string-class=NSConstantString>)
  # CMake knows no flags of GCC's for the standard of either language.
  target_compile_options(zqm_objc INTERFACE
    $<$<COMPILE_LANGUAGE:OBJC>:-std=gnu${CMAKE_OBJC_STANDARD}>
    $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++${CMAKE_OBJCXX_STANDARD}>)
  target_compile_definitions(zqm_objc INTERFACE
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:_NATIVE_OBJC_EXCEPTIONS;GNU_RUNTIME=1;GNUSTEP_BASE_LIBRARY=1>)
  # A library that holds Objective-C classes can't be unloaded: the runtime keeps pointers into it.
  target_link_options(zqm_objc INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-z,nodelete>)
  target_link_libraries(zqm_objc INTERFACE "${GNUSTEP_BASE_LIBRARY}" objc)
endif()

# `zqm::frameworks` is all that the plugin is written against: Apple's frameworks, and elsewhere the platform
# library that stands in for them.
add_library(zqm_frameworks INTERFACE)
add_library(zqm::frameworks ALIAS zqm_frameworks)
target_link_libraries(zqm_frameworks INTERFACE zqm::objc)
if(APPLE)
  foreach(framework IN ITEMS AppKit CoreFoundation CoreServices CoreText)
    target_link_libraries(zqm_frameworks INTERFACE "-framework ${framework}")
  endforeach()
  # Parts of the File Manager and of Foundation's dates have no successor with the same meaning.
  target_compile_options(zqm_frameworks INTERFACE -Wno-deprecated-declarations)
else()
  target_link_libraries(zqm_frameworks INTERFACE zqmplatform)
endif()
