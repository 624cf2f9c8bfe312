# What the program asks of a Linux desktop session: login, notifications, tray, single instance.
find_package(Qt6 6.4 REQUIRED COMPONENTS DBus Widgets)

add_library(kalvaro_platform_desktop STATIC
    ${CMAKE_CURRENT_LIST_DIR}/dbusaktivierung.cpp
    ${CMAKE_CURRENT_LIST_DIR}/dbusaktivierung.h
    ${CMAKE_CURRENT_LIST_DIR}/dbuseinzelinstanz.cpp
    ${CMAKE_CURRENT_LIST_DIR}/dbuseinzelinstanz.h
    ${CMAKE_CURRENT_LIST_DIR}/dbusmitteilungen.cpp
    ${CMAKE_CURRENT_LIST_DIR}/dbusmitteilungen.h
    ${CMAKE_CURRENT_LIST_DIR}/dbusverbindung.cpp
    ${CMAKE_CURRENT_LIST_DIR}/dbusverbindung.h
    ${CMAKE_CURRENT_LIST_DIR}/einzelinstanzsperre.cpp
    ${CMAKE_CURRENT_LIST_DIR}/einzelinstanzsperre.h
    ${CMAKE_CURRENT_LIST_DIR}/logindwache.cpp
    ${CMAKE_CURRENT_LIST_DIR}/logindwache.h
    ${CMAKE_CURRENT_LIST_DIR}/traystatusobjekt.cpp
    ${CMAKE_CURRENT_LIST_DIR}/traystatusobjekt.h
    ${CMAKE_CURRENT_LIST_DIR}/traysymbol.cpp
    ${CMAKE_CURRENT_LIST_DIR}/traysymbol.h
    ${CMAKE_CURRENT_LIST_DIR}/traywache.cpp
    ${CMAKE_CURRENT_LIST_DIR}/traywache.h
    ${CMAKE_CURRENT_LIST_DIR}/trayxembed.cpp
    ${CMAKE_CURRENT_LIST_DIR}/trayxembed.h
    ${CMAKE_CURRENT_LIST_DIR}/xdganmeldestart.cpp
    ${CMAKE_CURRENT_LIST_DIR}/xdganmeldestart.h)
target_link_libraries(kalvaro_platform_desktop
    PUBLIC kalvaro_platform Qt6::DBus Qt6::Widgets
    PRIVATE kalvaro_ui PkgConfig::XCB)
