# The Debian packages, a component each: scripts/make-packages builds what is in them and has cpack make them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zqmspeech)
set(CPACK_PACKAGE_VENDOR "the libZQMNSSpeech maintainers")
set(CPACK_PACKAGE_CONTACT "${ZQM_CONTACT}") # CPack names it as the maintainer
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries that belong to Debian; ours are named in the table.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/finish.cmake")
set(CPACK_ZQM_SOURCES "${CMAKE_CURRENT_LIST_DIR}")
set(CPACK_ZQM_DOCUMENTS "${documents}")

get_cmake_property(components COMPONENTS)
set(plugin_of_same_version "zqmspeech-plugin (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# zqm_package(COMPONENT NAME SECTION DEPENDS): a package of that component, if this build has it. Its description
# is the file NAME.txt: a line in short, then in full.
macro(zqm_package component name section depends)
  if("${component}" IN_LIST components)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER ${component} variable)
    set(CPACK_DEBIAN_${variable}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${variable}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${variable}_PACKAGE_DEPENDS "${depends}")
    file(READ "${CMAKE_CURRENT_LIST_DIR}/${name}.txt" CPACK_DEBIAN_${variable}_DESCRIPTION)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/${name}.txt")
  endif()
endmacro()

zqm_package(plugin zqmspeech-plugin sound "espeak-ng-data, pocketsphinx-en-us")
# What others' packages depend on that are linked with the platform library: any version with that interface.
get_target_property(platform_version zqmplatform SOVERSION)
math(EXPR next_minor "${PROJECT_VERSION_MINOR} + 1")
configure_file("${CMAKE_CURRENT_LIST_DIR}/shlibs.in" "${CMAKE_CURRENT_BINARY_DIR}/shlibs" @ONLY)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_CONTROL_EXTRA
  "${CMAKE_CURRENT_LIST_DIR}/triggers;${CMAKE_CURRENT_BINARY_DIR}/shlibs")
# For speech aloud and for listening; files need none.
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SUGGESTS "pipewire-pulse | pulseaudio")
zqm_package(command zqmspeech sound "${plugin_of_same_version}")
zqm_package(development libzqmhost-dev libdevel "${plugin_of_same_version}, libffi-dev")
zqm_package(python python3-zqm python "${plugin_of_same_version}, python3 (>= 3.11), python3 (<< 3.12)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  "${CMAKE_CURRENT_LIST_DIR}/python3-zqm/postinst;${CMAKE_CURRENT_LIST_DIR}/python3-zqm/prerm")

include(CPack)
