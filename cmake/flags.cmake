# The one place where our compiler flags are set: every target of ours links kalvaro_flags.
option(KALVARO_WERROR "Treat warnings as errors, as make lint and CI do" OFF)
option(KALVARO_COVERAGE "Build with gcov counters" OFF)
set(KALVARO_SANITIZE "" CACHE STRING "Sanitizers, for example address,undefined")

add_library(kalvaro_flags INTERFACE)
target_compile_features(kalvaro_flags INTERFACE cxx_std_20)
target_compile_options(kalvaro_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:KALVARO_OHNE_CONVERSION>>>:-Wconversion>
    $<$<BOOL:${KALVARO_WERROR}>:-Werror>)
target_compile_definitions(kalvaro_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_CONTEXTLESS_CONNECT QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(KALVARO_SANITIZE)
    target_compile_options(kalvaro_flags INTERFACE
        -fsanitize=${KALVARO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kalvaro_flags INTERFACE -fsanitize=${KALVARO_SANITIZE})
endif()
if(KALVARO_COVERAGE)
    target_compile_options(kalvaro_flags INTERFACE --coverage -O0)
    target_link_options(kalvaro_flags INTERFACE --coverage)
endif()
