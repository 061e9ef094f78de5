# Where optimisation across files is asked for but the compiler's tools cannot do it, as with clang
# without its linker plug-in, the engine is built without. It plays the same moves, some slower.
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION)
    if(NOT DEFINED ZAR_LTO_WORKS)
        include(CheckIPOSupported)
        check_ipo_supported(RESULT lto_works LANGUAGES CXX)
        set(ZAR_LTO_WORKS "${lto_works}" CACHE INTERNAL "Can the compiler optimise across files?")
    endif()
    if(NOT ZAR_LTO_WORKS)
        message(STATUS "This compiler cannot optimise across files; building without")
        set(CMAKE_INTERPROCEDURAL_OPTIMIZATION OFF)
    endif()
endif()
