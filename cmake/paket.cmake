# The Debian package, made by `cpack` (tools/paket.sh calls it with the time of the commit).
find_program(DPKG dpkg)
if(NOT DPKG)
    return()
endif()
execute_process(COMMAND ${DPKG} --print-architecture
    OUTPUT_VARIABLE architektur OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kalvaro)
set(CPACK_PACKAGE_VENDOR kalvaro)
set(CPACK_PACKAGE_CONTACT "kalvaro <paket@kalvaro.de>")
set(CPACK_DEBIAN_FILE_NAME kalvaro_${PROJECT_VERSION}_${architektur}.deb)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${architektur})
set(CPACK_DEBIAN_PACKAGE_SECTION non-free/sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://kalvaro.de/)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keeps a rekordbox library in step with the cloud")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "kalvaro is a companion for DJs who play with rekordbox. It asks \
a server to
reconcile this computer's library with the central copy, waits for the
verdict, says in plain German what happened, and only then lets rekordbox
start. It watches rekordbox, syncs after it has quit and catches up what
failed.")

# What dpkg-shlibdeps cannot see because it is loaded, run or read only later.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-translations-l10n, procps, hicolor-icon-theme, ca-certificates")
# The desktop's own icons may be drawings; the SVG plug-in had no package of its own before Qt 6.5.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "qt6-svg-plugins | libqt6svg6 (<< 6.5~), qt6-wayland, qt6-gtk-platformtheme, \
default-dbus-session-bus | dbus-session-bus")

set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/abschluss.cmake)
set(CPACK_KALVARO_QUELLE ${PROJECT_SOURCE_DIR})
include(CPack)
