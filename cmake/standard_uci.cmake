# The engine behind the standard protocol, complete: an executable of its own, built where libuv is.
set(ONDREL_UCI AUTO CACHE STRING "Build ondrel-uci: AUTO (if libuv is found), ON or OFF")
set_property(CACHE ONDREL_UCI PROPERTY STRINGS AUTO ON OFF)

# Gives the target ondrel_libuv where libuv is found, its archive before its shared library.
function(find_libuv)
    find_path(ONDREL_LIBUV_INCLUDE uv.h)
    find_library(ONDREL_LIBUV NAMES libuv_a.a libuv.a uv_a uv)
    mark_as_advanced(ONDREL_LIBUV_INCLUDE ONDREL_LIBUV)
    if(NOT ONDREL_LIBUV_INCLUDE OR NOT ONDREL_LIBUV)
        return()
    endif()
    find_package(Threads REQUIRED)
    add_library(ondrel_libuv INTERFACE)
    target_include_directories(ondrel_libuv SYSTEM INTERFACE "${ONDREL_LIBUV_INCLUDE}")
    target_link_libraries(ondrel_libuv INTERFACE "${ONDREL_LIBUV}" Threads::Threads ${CMAKE_DL_LIBS})
    if(WIN32)
        target_link_libraries(ondrel_libuv INTERFACE psapi user32 advapi32 iphlpapi userenv ws2_32 dbghelp ole32)
    elseif(UNIX AND NOT APPLE)
        target_link_libraries(ondrel_libuv INTERFACE rt)
    endif()
endfunction()

if(ONDREL_UCI)
    find_libuv()
endif()
if(ONDREL_UCI STREQUAL "ON" AND NOT TARGET ondrel_libuv)
    message(FATAL_ERROR "ONDREL_UCI=ON: libuv was not found (Debian package libuv1-dev)")
elseif(NOT TARGET ondrel_libuv)
    message(STATUS "No ondrel-uci: libuv was not found, or it is switched off")
endif()

if(TARGET ondrel_libuv)
    file(GLOB standard_uci_sources CONFIGURE_DEPENDS "${src}/standard_uci/*")
    list(REMOVE_ITEM standard_uci_sources "${src}/standard_uci/main.cpp")
    add_objects(ondrel_standard_uci_floor ${standard_uci_sources})
    target_link_libraries(ondrel_standard_uci_floor PUBLIC ondrel_libuv)
    # GCC 12 takes the joining of short strings for overlapping copies.
    target_compile_options(ondrel_standard_uci_floor PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

    # Everything but the program: what the tests and the fuzzer talk to.
    add_core(ondrel_standard_uci ondrel_search ondrel_clock ondrel_standard_uci_floor)

    add_executable(ondrel-uci "${src}/standard_uci/main.cpp")
    target_link_libraries(ondrel-uci PRIVATE ondrel_standard_uci ondrel_warnings)
    add_dependencies(engines ondrel-uci)
endif()
