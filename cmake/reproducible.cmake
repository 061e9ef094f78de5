# The same source and compiler give the same bytes in whatever folder: no path, no date.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}=." -Werror=date-time)
if(MINGW)
    add_link_options(-Wl,--no-insert-timestamp)
endif()

# The engine is small enough to be optimised as one piece; in several, GCC asks for make.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_INTERPROCEDURAL_OPTIMIZATION)
    add_link_options(-flto-partition=one)
endif()
