# KALVARO_MACOS: whether the adapters of macOS are built into the program. On another system only the
# preset macos-pruefung does that, to check what is meant for a Mac (cmake/macospruefung.cmake).
if(NOT DEFINED KALVARO_MACOS)
    set(KALVARO_MACOS ${APPLE})
endif()
if(NOT KALVARO_MACOS)
    return()
endif()
if(NOT APPLE)
    include(${CMAKE_CURRENT_LIST_DIR}/macospruefung.cmake)
endif()
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)

# kalvaro_rahmenwerke(TARGET FRAMEWORKS...): has a target see and link Apple's frameworks. Its .mm files
# count their references by hand, as the runtime demands with which they are checked elsewhere, and go
# without the headers that are precompiled for C++.
function(kalvaro_rahmenwerke ziel)
    get_target_property(quellen ${ziel} SOURCES)
    list(FILTER quellen INCLUDE REGEX "\\.mm$")
    if(quellen)
        set_source_files_properties(${quellen} PROPERTIES
            COMPILE_OPTIONS "-fno-objc-arc;-fblocks" SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOMOC ON)
    endif()
    if(APPLE)
        list(TRANSFORM ARGN PREPEND "-framework ")
        target_link_libraries(${ziel} PRIVATE ${ARGN})
    else()
        target_link_libraries(${ziel} PRIVATE kalvaro_rahmenattrappen)
    endif()
endfunction()
