# What the property list of the bundle says, apart from cmake/buendel.cmake so that its test reads the same
# on every system.
set(KALVARO_KENNUNG de.kalvaro.kalvaro)
set(KALVARO_MACOS_MINDESTENS ${CMAKE_OSX_DEPLOYMENT_TARGET})
set(KALVARO_INFO_PLIST ${PROJECT_BINARY_DIR}/packaging/macos/Info.plist)
configure_file(${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in ${KALVARO_INFO_PLIST} @ONLY)
