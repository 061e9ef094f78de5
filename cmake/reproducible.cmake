# The same source and compiler give the same bytes, whatever folder it is built in: no path, no date.
if(NOT MSVC)
    add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}=." -Werror=date-time)
endif()
