# The warnings every target is built with. They stop the build only where ZAR_WERROR asks for it, so
# that a compiler newer than ours never keeps anybody from building a release.
add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wmissing-declarations)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_options(-Wreserved-identifier)
endif()

set(CMAKE_COMPILE_WARNING_AS_ERROR ${ZAR_WERROR})
