# development: the reference host, for host programs in C++, which need the component plugin as well.
include(CMakePackageConfigHelpers)

# Its headers include the plugin's interface by a name that is looked for beside them first.
set_target_properties(zqmhost PROPERTIES EXPORT_NAME host)
install(TARGETS zqmhost EXPORT zqmhost
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/host/include/zqmhost"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
install(FILES "${PROJECT_SOURCE_DIR}/plugin/host_interface.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zqmhost/plugin" COMPONENT development)

# CMake strips no archives; without its symbols for the linker one would be worth nothing, without those for
# debuggers it is a tenth.
if(NOT APPLE)
  install(CODE "
    if(CMAKE_INSTALL_DO_STRIP)
      execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug --enable-deterministic-archives
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:zqmhost>\"
        COMMAND_ERROR_IS_FATAL ANY)
    endif()" COMPONENT development)
endif()

# find_package(zqmhost)
set(config_folder "${CMAKE_INSTALL_LIBDIR}/cmake/zqmhost")
set(ZQM_PLUGIN_FILE "${CMAKE_SHARED_LIBRARY_PREFIX}ZQMNSSpeech${CMAKE_SHARED_LIBRARY_SUFFIX}")
set(ZQM_PLUGIN "${CMAKE_INSTALL_LIBDIR}/${ZQM_PLUGIN_FILE}")
configure_package_config_file(zqmhost-config.cmake.in zqmhost-config.cmake
  INSTALL_DESTINATION "${config_folder}" PATH_VARS ZQM_PLUGIN)
write_basic_package_version_file(zqmhost-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/zqmhost-config.cmake" "${CMAKE_CURRENT_BINARY_DIR}/zqmhost-config-version.cmake"
  DESTINATION "${config_folder}" COMPONENT development)
install(EXPORT zqmhost FILE zqmhost-targets.cmake NAMESPACE zqm::
  DESTINATION "${config_folder}" COMPONENT development)

# pkg-config zqmhost. It is an archive, so what it needs itself has to be named to whoever links it.
if(APPLE)
  set(ZQM_HOST_LIBRARIES "-framework CoreFoundation -framework CoreServices")
else()
  set(ZQM_HOST_LIBRARIES "-lzqmplatform")
endif()
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH ZQM_PREFIX_FROM_PKGCONFIG "/${pkgconfig_folder}" /)
string(REGEX REPLACE "/$" "" ZQM_PREFIX_FROM_PKGCONFIG "${ZQM_PREFIX_FROM_PKGCONFIG}")
configure_file(zqmhost.pc.in zqmhost.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zqmhost.pc" DESTINATION "${pkgconfig_folder}" COMPONENT development)

zqm_install_documents(development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${documents}" COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${documents}" COMPONENT development
  PATTERN CMakeLists.txt EXCLUDE)

# What the platform library tells beyond what classes do; macOS has no such thing.
if(NOT APPLE)
  set(platform_headers "${PROJECT_SOURCE_DIR}/platform/include/zqmplatform")
  install(FILES "${platform_headers}/linkage.h" "${platform_headers}/listening.h" "${platform_headers}/speaking.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zqmplatform" COMPONENT development)
endif()
