# What is built beside the engine, which itself wants a compiler and nothing else. Each part is ON,
# OFF or AUTO: built where its libraries are, and otherwise left out with a line that says so. The
# presets ask for AUTO, so what a build folder was configured for before is never in the way.
set(ZAR_BUILD_TOOLS AUTO CACHE STRING "Build zar-x3-tools (CLI11, nlohmann-json): ON, OFF or AUTO")
set(BUILD_TESTING AUTO CACHE STRING "Build the tests (GoogleTest, Python 3): ON, OFF or AUTO")

# Makes ON or OFF of AUTO. Behind the name of the part are the Debian packages that it lacks.
macro(zar_settle option part)
    string(JOIN " " lacking ${ARGN})
    if("${${option}}" STREQUAL AUTO AND lacking)
        message(STATUS "Left out for want of ${lacking}: ${part}")
        set(${option} OFF)
    elseif("${${option}}" STREQUAL AUTO)
        set(${option} ON)
    elseif(${option} AND lacking)
        message(FATAL_ERROR "${option} is ON, but these Debian packages are missing: ${lacking}")
    endif()
endmacro()

find_package(CLI11 QUIET)
find_package(nlohmann_json QUIET)
find_package(GTest QUIET)
find_package(Python3 QUIET COMPONENTS Interpreter)

set(tools_lack "")
if(NOT CLI11_FOUND)
    list(APPEND tools_lack libcli11-dev)
endif()
if(NOT nlohmann_json_FOUND)
    list(APPEND tools_lack nlohmann-json3-dev)
endif()
zar_settle(ZAR_BUILD_TOOLS "zar-x3-tools, its manual page and the opening book" ${tools_lack})

# The tests drive the tools, too.
set(tests_lack ${tools_lack})
if(NOT GTest_FOUND)
    list(APPEND tests_lack libgtest-dev)
endif()
if(NOT Python3_FOUND)
    list(APPEND tests_lack python3)
endif()
if(NOT ZAR_BUILD_TOOLS AND BUILD_TESTING STREQUAL AUTO AND NOT tools_lack)
    set(BUILD_TESTING OFF)
endif()
zar_settle(BUILD_TESTING "the tests" ${tests_lack})
