# kalvaro_raum(NAME [ORDNER folder] QUELLEN files... [SIEHT rooms...] [BRAUCHT libraries...]
#              [INTERN libraries...])
# A room of the house: a static library kalvaro_NAME whose sources can include their own headers and
# those of the rooms that they see, and no others. INTERN is what only the .cpp files need.
#
# Each room has an include root of its own in the build tree, with links to its headers under their
# usual names, "folder/header.h"; so the walls hold for every tool that reads the compile commands.
function(kalvaro_raum name)
    cmake_parse_arguments(PARSE_ARGV 1 RAUM "" "ORDNER" "QUELLEN;SIEHT;BRAUCHT;INTERN")
    if(NOT RAUM_ORDNER)
        set(RAUM_ORDNER ${name})
    endif()
    set(wurzel ${PROJECT_BINARY_DIR}/raeume/${name})
    file(REMOVE_RECURSE ${wurzel})
    file(MAKE_DIRECTORY ${wurzel}/${RAUM_ORDNER})
    file(GLOB kopfdateien CONFIGURE_DEPENDS *.h)
    foreach(kopfdatei ${kopfdateien})
        get_filename_component(datei ${kopfdatei} NAME)
        file(CREATE_LINK ${kopfdatei} ${wurzel}/${RAUM_ORDNER}/${datei} SYMBOLIC)
    endforeach()

    set(raeume ${RAUM_SIEHT})
    list(TRANSFORM raeume PREPEND kalvaro_)
    add_library(kalvaro_${name} STATIC ${RAUM_QUELLEN})
    target_include_directories(kalvaro_${name} PUBLIC ${wurzel})
    target_link_libraries(kalvaro_${name}
        PUBLIC kalvaro_flags ${raeume} ${RAUM_BRAUCHT}
        PRIVATE ${RAUM_INTERN})

    # Whoever sees a room with windows has them, too.
    set(fenster OFF)
    if("Qt6::Widgets" IN_LIST RAUM_BRAUCHT)
        set(fenster ON)
    endif()
    foreach(raum ${raeume})
        get_target_property(auch ${raum} KALVARO_FENSTER)
        if(auch)
            set(fenster ON)
        endif()
    endforeach()
    set_target_properties(kalvaro_${name} PROPERTIES KALVARO_FENSTER ${fenster})
    kalvaro_vorabnehmen(kalvaro_${name} kalvaro_vorab ${fenster})

    string(REPLACE ";" " " sieht "${RAUM_SIEHT}")
    string(STRIP "${name} → ${sieht}" zeile)
    set_property(GLOBAL APPEND_STRING PROPERTY KALVARO_RAEUME "${zeile}\n")
endfunction()

# Writes down which room sees which, for the check of the document (tools/waende.py).
function(kalvaro_raeume_schreiben datei)
    get_property(raeume GLOBAL PROPERTY KALVARO_RAEUME)
    file(WRITE ${datei} "${raeume}")
endfunction()
