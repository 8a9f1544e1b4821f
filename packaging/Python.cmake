# python: the module zqm, which needs the component plugin.
set(package_folder "${ZQM_PYTHON_FOLDER}/zqm")

# The platform's library stands beside the module in the build and in packages for pip, else with the other libraries.
if(NOT APPLE)
  file(RELATIVE_PATH library_folder "${CMAKE_INSTALL_PREFIX}/${package_folder}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  string(REGEX REPLACE "/$" "" library_folder "${library_folder}")
  zqm_set_library_folders(zqm_python "$ORIGIN" "$ORIGIN/${library_folder}")
endif()
install(TARGETS zqm_python LIBRARY DESTINATION "${package_folder}" COMPONENT python)
get_target_property(modules zqm_python ZQM_MODULES)
install(FILES ${modules} DESTINATION "${package_folder}" COMPONENT python)
zqm_install_documents(python)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/python/examples" DESTINATION "${documents}" COMPONENT python)
