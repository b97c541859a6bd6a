# 32-bit ARM with Debian's cross C library and libstdc++; scripts/armhf-sysroot fills the sysroot
# with the platform libraries. Programs run under qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET arm-linux-gnueabihf)
set(CMAKE_CXX_COMPILER_TARGET arm-linux-gnueabihf)

get_filename_component(source_dir "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)
set(QELTV_SYSROOT "${source_dir}/build/sysroot-armhf" CACHE PATH "Root of the ARM libraries")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QELTV_SYSROOT)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L "${QELTV_SYSROOT}")

set(CMAKE_FIND_ROOT_PATH "${QELTV_SYSROOT}" /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
