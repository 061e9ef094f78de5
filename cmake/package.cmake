# The target "packages": archives of the installed files with their checksums, in packages/ of the
# build tree: a .tar.xz that may be unpacked anywhere, and a .deb on Debian. Both need zar-x3-tools,
# which makes the book. Where something is missing, the target says what and fails.
if(WIN32)
    return()
endif()
set(ZAR_PACKAGE_CONTACT "the ZAR-X3 authors <zar-x3@packages.invalid>"
    CACHE STRING "Who answers for the packages: a name and an address in angle brackets")

# What the packages lack here, as Debian packages. On a system without Debian's tools there is no .deb.
set(packages_lack ${tools_lack})
set(CPACK_GENERATOR TXZ)
find_program(DPKG dpkg)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
find_program(FILE_UTILITY file)
mark_as_advanced(DPKG DPKG_SHLIBDEPS FILE_UTILITY)
if(DPKG)
    list(APPEND CPACK_GENERATOR DEB)
    if(NOT DPKG_SHLIBDEPS)
        list(APPEND packages_lack dpkg-dev)
    endif()
    if(NOT FILE_UTILITY)
        list(APPEND packages_lack file)
    endif()
endif()
# Told at once, and not behind minutes of building.
set(obstacle "")
if(packages_lack)
    string(JOIN " " lacking ${packages_lack})
    set(obstacle "install ${lacking}, and configure again")
elseif(NOT ZAR_BUILD_TOOLS)
    set(obstacle "configure with ZAR_BUILD_TOOLS=ON")
endif()
if(obstacle)
    add_custom_target(
        packages
        COMMAND "${CMAKE_COMMAND}" -E echo "To make the packages, ${obstacle}."
        COMMAND "${CMAKE_COMMAND}" -E false
        VERBATIM)
    return()
endif()

set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGE_VENDOR "the ZAR-X3 authors")
set(CPACK_PACKAGE_CONTACT "${ZAR_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_FILE_NAME
    "zar-x3-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_BINARY_DIR};zar-x3;Runtime;/" "${PROJECT_BINARY_DIR};zar-x3;Documentation;/")
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chess engine that speaks UCI")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "ZAR-X3 is a classical chess engine: a console program that speaks the
Universal Chess Interface, for playing and analysing in any chess program
that does. It has eleven levels of strength, uses up to four threads, and
comes with an opening book and with tools for books and positions.")

# CPack runs this between the installation and the packing.
set(ZAR_DEBIAN_DIR "${PROJECT_BINARY_DIR}/debian")
configure_file("${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in" "${ZAR_DEBIAN_DIR}/changelog" @ONLY)
configure_file("${PROJECT_SOURCE_DIR}/cmake/debian/copyright" "${ZAR_DEBIAN_DIR}/copyright" COPYONLY)
configure_file("${PROJECT_SOURCE_DIR}/cmake/layout.cmake.in" "${PROJECT_BINARY_DIR}/layout.cmake"
               @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_BINARY_DIR}/layout.cmake")
include(CPack)

# The files in the packages have the day of the version, so the same build packs the same bytes.
add_custom_target(
    packages
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${CPACK_PACKAGE_DIRECTORY}"
    COMMAND "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=${ZAR_RELEASE_EPOCH}
            "${CMAKE_CPACK_COMMAND}" --config "${PROJECT_BINARY_DIR}/CPackConfig.cmake"
    COMMAND "${CMAKE_COMMAND}" -D "folder=${CPACK_PACKAGE_DIRECTORY}"
            -P "${PROJECT_SOURCE_DIR}/cmake/checksums.cmake"
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${CPACK_PACKAGE_DIRECTORY}/_CPack_Packages"
    DEPENDS zar-x3 zar-x3-tools opening_book
    VERBATIM)
