# Builds for 64-bit Intel macOS on Debian: Debian's clang, lld and libc++ headers, and cmake/macos-sdk in
# place of Apple's SDK.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_OSX_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../macos-sdk")
cmake_path(NORMAL_PATH CMAKE_OSX_SYSROOT)

set(llvm /usr/lib/llvm-14)
foreach(language IN ITEMS C OBJC)
  set(CMAKE_${language}_COMPILER "${llvm}/bin/clang")
endforeach()
foreach(language IN ITEMS CXX OBJCXX)
  set(CMAKE_${language}_COMPILER "${llvm}/bin/clang++")
  # Ours first: the configuration of macOS's own libc++.
  set(CMAKE_${language}_FLAGS_INIT
    "-nostdinc++ -isystem \"${CMAKE_OSX_SYSROOT}/usr/include/c++\" -isystem ${llvm}/include/c++/v1")
endforeach()
foreach(language IN ITEMS C OBJC CXX OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET x86_64-apple-macos${CMAKE_OSX_DEPLOYMENT_TARGET})
endforeach()
set(CMAKE_AR "${llvm}/bin/llvm-ar")
set(CMAKE_RANLIB "${llvm}/bin/llvm-ranlib")
set(CMAKE_INSTALL_NAME_TOOL "${llvm}/bin/llvm-install-name-tool")
set(CMAKE_STRIP "${llvm}/bin/llvm-strip")

# clang hands lld no linker version, and writes old load commands then.
foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-fuse-ld=lld -mlinker-version=609 -Wl,-fatal_warnings -stdlib=libc++ -Wno-unused-command-line-argument")
endforeach()

# There is no C start-up code to link a program with.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH "${CMAKE_OSX_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
