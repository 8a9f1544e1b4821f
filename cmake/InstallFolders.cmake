# Where things go below the prefix of an installation. Debian's linker, pkg-config and CMake look for libraries
# and for what goes with them in lib/ARCHITECTURE, below /usr/local as below /usr.
if(EXISTS /etc/debian_version AND CMAKE_LIBRARY_ARCHITECTURE AND NOT CMAKE_CROSSCOMPILING)
  set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}" CACHE PATH "Object code libraries")
endif()
include(GNUInstallDirs)

# Where Python looks depends on the prefix: this is right for /usr of Debian.
set(ZQM_PYTHON_FOLDER "lib/python3/dist-packages" CACHE STRING "Folder of Python packages, below the prefix")
