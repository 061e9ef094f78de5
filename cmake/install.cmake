# What "cmake --install" puts where, below the prefix. The components:
#   Runtime        the engine, its tools and the opening book
#   Documentation  README, changelog, docs/, what these refer to, and the manual pages
# Tools and book are there when ZAR_BUILD_TOOLS is on; where they are not, the installation says so.
# The engine needs none of the other files.
include(GNUInstallDirs)
include(release_date)

# The same modes whatever the umask of the one who installs.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

install(TARGETS zar-x3 RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
set(manual_pages zar-x3)
if(ZAR_BUILD_TOOLS)
    install(TARGETS zar-x3-tools RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
    install(FILES "${PROJECT_BINARY_DIR}/share/ZAR.ebk"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/zar-x3" COMPONENT Runtime)
    list(APPEND manual_pages zar-x3-tools)
endif()

foreach(page ${manual_pages})
    configure_file("${PROJECT_SOURCE_DIR}/docs/man/${page}.6.in" "${PROJECT_BINARY_DIR}/man/${page}.6"
                   @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/man/${page}.6" DESTINATION "${CMAKE_INSTALL_MANDIR}/man6"
            COMPONENT Documentation)
endforeach()
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION "${CMAKE_INSTALL_DOCDIR}"
        COMPONENT Documentation)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation
        PATTERN man EXCLUDE)

# Last, behind the list of what was installed.
if(NOT ZAR_BUILD_TOOLS)
    install(CODE "message(\"-- Left out: zar-x3-tools, its manual page and the opening book, which want \"
                          \"libcli11-dev and nlohmann-json3-dev\")"
            COMPONENT Runtime)
endif()
