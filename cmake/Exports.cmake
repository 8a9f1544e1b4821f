# zqm_export_only(TARGET function...)
# The library exports these functions, of C linkage, and nothing else: hidden visibility leaves the type
# information of thrown standard types visible, and a host loads many plugins into one process. To be called when
# the target has its sources and libraries.
function(zqm_export_only target)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}")
  if(APPLE)
    list(TRANSFORM ARGN PREPEND "_" OUTPUT_VARIABLE symbols)
    list(JOIN symbols "\n" lines)
    file(CONFIGURE OUTPUT "${folder}/exports.txt" CONTENT "${lines}\n")
    target_link_options(${target} PRIVATE "LINKER:-exported_symbols_list,${folder}/exports.txt")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${folder}/exports.txt")
  else()
    list(JOIN ARGN "; " symbols)
    file(CONFIGURE OUTPUT "${folder}/exports.map" CONTENT "{ global: ${symbols}; local: *; };\n")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${folder}/exports.map")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${folder}/exports.map")
  endif()

  if(CMAKE_CROSSCOMPILING)
    # The same without its list: scripts/check-macos looks at what would leak.
    get_target_property(libraries ${target} LINK_LIBRARIES)
    add_library(${target}_unlisted SHARED $<TARGET_OBJECTS:${target}>)
    target_link_libraries(${target}_unlisted PRIVATE ${libraries})
    set_target_properties(${target}_unlisted PROPERTIES
      OUTPUT_NAME ${target}
      LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/unlisted")
  endif()
endfunction()
