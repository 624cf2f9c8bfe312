# KALVARO_MACOS: whether the adapters of macOS are built into the program. Elsewhere than there only the
# check of the lists and declarations (preset macos-pruefung) sets it; it compiles, and links no program.
if(NOT DEFINED KALVARO_MACOS)
    set(KALVARO_MACOS ${APPLE})
endif()
if(NOT KALVARO_MACOS)
    return()
endif()

if(NOT APPLE)
    # clang reads Objective-C++ here; what GNUstep's headers lack is declared in tools/macospruefung.
    set(CMAKE_OBJCXX_COMPILER clang++)
    find_path(KALVARO_GNUSTEP AppKit/AppKit.h PATHS /usr/include/GNUstep REQUIRED)
    # The headers of the runtime come with GCC's own, which clang must not prefer to its own.
    file(GLOB laufzeiten /usr/lib/gcc/*/*/include)
    find_path(KALVARO_OBJC objc/objc.h PATHS ${laufzeiten} REQUIRED)
endif()
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)

# kalvaro_rahmenwerke(TARGET FRAMEWORKS...): has a target see and link Apple's frameworks. Its .mm files
# count references automatically and go without the headers that are precompiled for C++.
function(kalvaro_rahmenwerke ziel)
    get_target_property(quellen ${ziel} SOURCES)
    list(FILTER quellen INCLUDE REGEX "\\.mm$")
    foreach(quelle ${quellen})
        set_source_files_properties(${quelle} PROPERTIES
            COMPILE_OPTIONS "-fobjc-arc;-fblocks" SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOMOC ON)
    endforeach()
    if(APPLE)
        list(TRANSFORM ARGN PREPEND "-framework ")
        target_link_libraries(${ziel} PRIVATE ${ARGN})
    else()
        target_include_directories(${ziel} SYSTEM BEFORE PRIVATE ${PROJECT_SOURCE_DIR}/tools/macospruefung)
        target_include_directories(${ziel} SYSTEM PRIVATE ${KALVARO_GNUSTEP})
        target_compile_options(${ziel} PRIVATE
            $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gnustep-2.0;-idirafter${KALVARO_OBJC}>)
    endif()
endfunction()
