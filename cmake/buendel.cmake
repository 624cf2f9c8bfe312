# kalvaro.app: the program with its property list, icon and texts. It runs where it was built;
# packaging/macos/buendeln.sh makes of it what other Macs run.
include(${CMAKE_CURRENT_LIST_DIR}/buendelangaben.cmake)

set(quelle ${PROJECT_SOURCE_DIR}/packaging/macos)
set_target_properties(kalvaro PROPERTIES
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST ${KALVARO_INFO_PLIST})
# kalvaro_beilage(FILE FOLDER): a file of the bundle, below Contents.
function(kalvaro_beilage datei ordner)
    target_sources(kalvaro PRIVATE ${datei})
    set_source_files_properties(${datei} TARGET_DIRECTORY kalvaro
        PROPERTIES MACOSX_PACKAGE_LOCATION ${ordner})
endfunction()
kalvaro_beilage(${quelle}/kalvaro.icns Resources)
kalvaro_beilage(${quelle}/de.lproj/InfoPlist.strings Resources/de.lproj)
kalvaro_beilage(${quelle}/en.lproj/InfoPlist.strings Resources/en.lproj)
