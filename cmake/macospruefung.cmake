# The macOS branch on another system, for make lint alone (preset macos-pruefung): clang reads
# Objective-C++ with GNUstep's headers and the declarations in tools/macospruefung, and what is linked and
# run stands on GNUstep's foundation and the stand-ins for Apple's frameworks there. A program comes of it
# that shows whether the lists are complete and the parts fit; it is nothing for a user.
set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
file(GLOB laufzeiten /usr/lib/gcc/*/*) # GNUstep uses GCC's runtime of Objective-C
find_path(KALVARO_GNUSTEP AppKit/AppKit.h PATH_SUFFIXES GNUstep REQUIRED)
find_library(KALVARO_GNUSTEP_BASE gnustep-base REQUIRED)
find_path(KALVARO_OBJC objc/objc.h PATHS ${laufzeiten} PATH_SUFFIXES include REQUIRED)
find_library(KALVARO_OBJC_BIBLIOTHEK objc PATHS ${laufzeiten} REQUIRED)
find_library(KALVARO_BLOECKE BlocksRuntime REQUIRED)

# What it brings stands behind clang's own headers, else GCC's of the same names would be found.
add_library(kalvaro_gnustep INTERFACE)
target_include_directories(kalvaro_gnustep SYSTEM BEFORE INTERFACE ${PROJECT_SOURCE_DIR}/tools/macospruefung)
target_include_directories(kalvaro_gnustep SYSTEM INTERFACE ${KALVARO_GNUSTEP})
target_compile_options(kalvaro_gnustep INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc;-fobjc-exceptions;-fconstant-string-class=NSConstantString;-idirafter${KALVARO_OBJC}>)
target_compile_definitions(kalvaro_gnustep INTERFACE
    $<$<COMPILE_LANGUAGE:OBJCXX>:GNUSTEP;GNUSTEP_BASE_LIBRARY=1;GNU_GUI_LIBRARY=1;GNU_RUNTIME=1;_NATIVE_OBJC_EXCEPTIONS>)
# The blocks' own library comes first: the copy of it in GNUstep's takes no block of clang's for one.
target_link_libraries(kalvaro_gnustep INTERFACE
    ${KALVARO_BLOECKE} ${KALVARO_GNUSTEP_BASE} ${KALVARO_OBJC_BIBLIOTHEK})
