# Makes Debian's documents of those that an installation has, in each package before it is closed.

# gzip leaves the time out, so that the same contents make the same package.
function(zqm_compress file)
  execute_process(COMMAND gzip --best --no-name "${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} variable)
  set(package ${CPACK_DEBIAN_${variable}_PACKAGE_NAME})
  set(tree "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}")

  # Two packages can't bring the same file.
  get_filename_component(folder "${tree}/${CPACK_ZQM_DOCUMENTS}" DIRECTORY)
  if(NOT "${folder}/${package}" STREQUAL "${tree}/${CPACK_ZQM_DOCUMENTS}")
    file(RENAME "${tree}/${CPACK_ZQM_DOCUMENTS}" "${folder}/${package}")
  endif()
  set(folder "${folder}/${package}")
  file(RENAME "${folder}/CHANGELOG.md" "${folder}/changelog")
  file(WRITE "${folder}/changelog.Debian"
    "zqmspeech (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
    "  * Version ${CPACK_PACKAGE_VERSION}, whose changes are listed in changelog.gz.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  zqm_compress("${folder}/changelog")
  zqm_compress("${folder}/changelog.Debian")

  file(GLOB manual_pages "${tree}/share/man/man*/*.[1-9]")
  foreach(page IN LISTS manual_pages)
    zqm_compress("${page}")
  endforeach()

  # Debian's zsh doesn't look below /usr where it does below /usr/local.
  if(EXISTS "${tree}/share/zsh/site-functions")
    file(RENAME "${tree}/share/zsh/site-functions" "${tree}/share/zsh/vendor-completions")
  endif()

  if(EXISTS "${CPACK_ZQM_SOURCES}/${package}.lintian-overrides")
    configure_file("${CPACK_ZQM_SOURCES}/${package}.lintian-overrides" "${tree}/share/lintian/overrides/${package}" COPYONLY)
  endif()
endforeach()
