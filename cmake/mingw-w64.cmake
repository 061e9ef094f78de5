# Builds for 64-bit Windows on another system, with the packages g++-mingw-w64-x86-64-posix and
# binutils-mingw-w64-x86-64 of Debian. The variant "posix" has the threads and semaphores of C++.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
find_program(CROSS_COMPILER x86_64-w64-mingw32-g++-posix)
if(NOT CROSS_COMPILER)
    message(FATAL_ERROR "Missing: x86_64-w64-mingw32-g++-posix. On Debian, install "
                        "g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64")
endif()
set(CMAKE_CXX_COMPILER "${CROSS_COMPILER}")
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The compiler's own libraries go into the program, so that it needs none but the system's.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
