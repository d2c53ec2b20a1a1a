# What `cmake --install` puts where, and the packages that cpack makes of it. A chess program stands with the games.
include(GNUInstallDirs)

install(TARGETS ondrel RUNTIME DESTINATION games)
install(FILES "${PROJECT_SOURCE_DIR}/docs/ondrel.6" DESTINATION "${CMAKE_INSTALL_MANDIR}/man6")
if(TARGET ondrel-uci)
    install(TARGETS ondrel-uci RUNTIME DESTINATION games)
    install(FILES "${PROJECT_SOURCE_DIR}/docs/ondrel-uci.6" DESTINATION "${CMAKE_INSTALL_MANDIR}/man6")
endif()
install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
# In a directory of their own, so that the links of README.md hold.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${CMAKE_INSTALL_DOCDIR}" FILES_MATCHING PATTERN "*.md")
install(FILES "${PROJECT_SOURCE_DIR}/CHANGELOG.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(CPACK_GENERATOR TGZ)
find_program(ONDREL_SHLIBDEPS dpkg-shlibdeps)
find_program(ONDREL_FILE file)
mark_as_advanced(ONDREL_SHLIBDEPS ONDREL_FILE)
if(ONDREL_SHLIBDEPS AND ONDREL_FILE)
    list(APPEND CPACK_GENERATOR DEB)
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_VENDOR "The Ondrel developers")
set(CPACK_PACKAGE_CONTACT "The Ondrel developers <ondrel@ondrel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
"Ondrel plays chess in a manner of its own. It speaks UCI on standard input
and output and has no board to look at: play it through a chess interface
that takes UCI engines, or through an adapter.

The program for a chess interface is ondrel-uci, which speaks the protocol
complete, with analysis, pondering and every kind of limit. The program ondrel
is the engine with a conversation of its own: one process with one thread.
Both read no files and no environment. There is an opening book built in, and
many options that bend the search, its judgement and its temperament.")

set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/before_packing.cmake")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
