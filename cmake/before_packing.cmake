# Run by cpack between installing into its own directory and packing that.

# The umask of whoever makes the package is not to be seen in it.
file(CHMOD_RECURSE "${CPACK_TEMPORARY_DIRECTORY}" DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Debian keeps manual pages compressed, without name and time.
if(CPACK_GENERATOR STREQUAL "DEB")
    file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/*.6")
    if(NOT pages)
        message(FATAL_ERROR "There is no manual page under ${CPACK_TEMPORARY_DIRECTORY}")
    endif()
    foreach(page IN LISTS pages)
        execute_process(COMMAND gzip -9n "${page}" COMMAND_ERROR_IS_FATAL ANY)
        file(CHMOD "${page}.gz" FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    endforeach()
endif()

# And a changelog of its own form.
if(CPACK_GENERATOR STREQUAL "DEB")
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    file(GLOB documents "${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/${CPACK_PACKAGE_NAME}")
    set(changelog "${documents}/changelog")
    file(WRITE "${changelog}"
"${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * What has changed is told in CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
    execute_process(COMMAND gzip -9n "${changelog}" COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD "${changelog}.gz" FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endif()
