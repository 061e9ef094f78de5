# Builds for 64-bit ARM Linux on another system, with the package g++-aarch64-linux-gnu of Debian.
# Programs of the build run under qemu-aarch64, from the package qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
find_program(CROSS_COMPILER aarch64-linux-gnu-g++)
if(NOT CROSS_COMPILER)
    message(FATAL_ERROR "Missing: aarch64-linux-gnu-g++. On Debian, install g++-aarch64-linux-gnu")
endif()
set(CMAKE_CXX_COMPILER "${CROSS_COMPILER}")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)

set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
