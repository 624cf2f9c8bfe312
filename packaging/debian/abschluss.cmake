# Run by cpack on what was installed: adds what Debian's policy wants of a package, and gives all
# files the time of the commit, so that the same commit makes the same package.
set(doku ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/kalvaro)
file(COPY ${CPACK_KALVARO_QUELLE}/packaging/debian/copyright
          ${CPACK_KALVARO_QUELLE}/packaging/debian/changelog
     DESTINATION ${doku}
     FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(
    COMMAND gzip -9n ${doku}/changelog
        ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/man1/kalvaro.1
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND strip --remove-section=.comment --remove-section=.note
        ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/bin/kalvaro
    COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(
        COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY}
            -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
        COMMAND_ERROR_IS_FATAL ANY)
endif()
