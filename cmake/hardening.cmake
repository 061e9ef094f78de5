# What Debian's own packages are hardened with, and the library's assertions in debug builds.
add_compile_options(-fstack-protector-strong -Wformat -Wformat-security)
# On Windows every compiler touches the pages of a large frame in turn; there GCC 12 fails with
# the option.
if(NOT WIN32)
    add_compile_options(-fstack-clash-protection)
endif()
# The C library of MinGW-w64 has none of the functions that the checks call; the driver's own
# library has them.
if(MINGW)
    add_link_options(-fstack-protector-strong)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    add_compile_options(-fcf-protection=full)
endif()

# The library goes into position-independent executables only, so -fPIE: -fPIC would have the
# engine call its own functions as if another library might replace them.
add_compile_options(-fPIE)
if(NOT WIN32)
    add_link_options($<$<LINK_LANGUAGE:CXX>:-pie> -Wl,-z,relro,-z,now)
endif()

# The checks of _FORTIFY_SOURCE need an optimising build and hide calls from the sanitizers.
# They allow the jump that a search is left by, to an older frame of its own stack.
if(NOT ZAR_SANITIZE)
    add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
