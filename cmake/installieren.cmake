# What `cmake --install` puts where: the program and its data, nothing of the demo or the tests.
include(GNUInstallDirs)
set(KALVARO_ZSH_ORDNER ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "Where zsh looks for completions; Debian's packages use share/zsh/vendor-completions")

# Everybody may read it. The installer's umask still cuts that for the folders on the way, so
# `make install` and the package set one.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(kennung de.kalvaro.kalvaro)
install(TARGETS kalvaro)
install(FILES packaging/${kennung}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/${kennung}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/kalvaro.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/kalvaro.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kalvaro)
install(FILES packaging/_kalvaro DESTINATION ${KALVARO_ZSH_ORDNER})
install(DIRECTORY packaging/icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
install(FILES src/ui/symbole/${kennung}.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The bus starts nothing but an absolute path, and `cmake --install --prefix` chooses it late.
set(dienst ${PROJECT_BINARY_DIR}/${kennung}.service)
install(CODE "
    set(programm \"${CMAKE_INSTALL_BINDIR}\")
    cmake_path(ABSOLUTE_PATH programm BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\" NORMALIZE)
    set(programm \"\${programm}/kalvaro\")
    configure_file(\"${PROJECT_SOURCE_DIR}/packaging/${kennung}.service.in\" \"${dienst}\" @ONLY)")
install(FILES ${dienst} DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)

# The manual with the pictures that it shows.
set(handbuch ${PROJECT_SOURCE_DIR}/docs/handbuch.md)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${handbuch})
file(STRINGS ${handbuch} zeilen ENCODING UTF-8)
string(REGEX MATCHALL "bilder/[A-Za-z0-9._-]+\\.png" bilder "${zeilen}")
list(REMOVE_DUPLICATES bilder)
list(TRANSFORM bilder PREPEND docs/)
install(FILES ${handbuch} CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${bilder} DESTINATION ${CMAKE_INSTALL_DOCDIR}/bilder)
