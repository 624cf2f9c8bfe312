# Qt's headers, precompiled. Reading them is most of what building costs, so they are read once for all
# sources that are compiled in the same way. ccache keeps nothing that was built with precompiled headers, and
# the sanitizers' build does without, so that it shows the include that a source forgot.
set(vorab ON)
if(CMAKE_CXX_COMPILER_LAUNCHER OR KALVARO_SANITIZE OR KALVARO_COVERAGE)
    set(vorab OFF)
endif()
option(KALVARO_VORAB "Precompile Qt's headers" ${vorab})

# kalvaro_vorab(NAME HEADERS... LIBS targets...): headers as targets compile them that link LIBS.
function(kalvaro_vorab name)
    if(NOT KALVARO_VORAB)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 VORAB "" "" "LIBS")
    add_library(${name} OBJECT ${PROJECT_SOURCE_DIR}/cmake/vorab.cpp)
    target_link_libraries(${name} PRIVATE kalvaro_flags ${VORAB_LIBS})
    target_precompile_headers(${name} PRIVATE ${VORAB_UNPARSED_ARGUMENTS})
endfunction()

# Gives a target those of kalvaro_vorab(), named after `art`, or after that and "_fenster" where it links
# Qt's windows.
function(kalvaro_vorabnehmen ziel art fenster)
    if(KALVARO_VORAB AND fenster)
        target_precompile_headers(${ziel} REUSE_FROM ${art}_fenster)
    elseif(KALVARO_VORAB)
        target_precompile_headers(${ziel} REUSE_FROM ${art})
    endif()
endfunction()
