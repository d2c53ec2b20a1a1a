# ONDREL_VERSION: the version number of project(), and behind it how far git is from the tag of that version, if git can
# tell: 29.1, 29.1+12.g0123abc, 29.1+g0123abc where there is no such tag, with .changed for what is not committed.
# As it was when CMake last looked.
function(find_version result)
    set(${result} "${PROJECT_VERSION}" PARENT_SCOPE)
    find_program(ONDREL_GIT git)
    mark_as_advanced(ONDREL_GIT)
    if(NOT ONDREL_GIT OR NOT EXISTS "${PROJECT_SOURCE_DIR}/.git")
        return()
    endif()
    set(tag "v${PROJECT_VERSION}")
    execute_process(
        COMMAND "${ONDREL_GIT}" describe --tags --match "${tag}" --always --abbrev=7 --dirty=.changed
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE place RESULT_VARIABLE failed
        ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    string(REPLACE "." "\\." tag_pattern "${tag}")
    if(failed OR place STREQUAL tag)
        return()
    elseif(place MATCHES "^${tag_pattern}-([0-9]+)-(g.*)$")
        set(suffix "${CMAKE_MATCH_1}.${CMAKE_MATCH_2}")
    elseif(place MATCHES "^${tag_pattern}\\.changed$")
        set(suffix "changed")
    else()
        set(suffix "g${place}")
    endif()
    set(${result} "${PROJECT_VERSION}+${suffix}" PARENT_SCOPE)
endfunction()

find_version(ONDREL_VERSION)

# For scripts.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/version" CONTENT "@ONDREL_VERSION@\n" @ONLY)

# ondrel-uci announces it; ondrel says what it has always said.
set_source_files_properties("${PROJECT_SOURCE_DIR}/src/standard_uci/session.cpp" PROPERTIES
    COMPILE_DEFINITIONS "ONDREL_VERSION=\"${ONDREL_VERSION}\"")
