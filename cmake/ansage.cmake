# KALVARO_ANSAGEEREIGNIS: whether this Qt has an event for what screen readers shall announce.
include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_LIBRARIES Qt6::Gui)
set(CMAKE_REQUIRED_FLAGS "-std=c++20")
check_cxx_source_compiles("
#include <QAccessible>
int main() { QAccessibleAnnouncementEvent ansage(static_cast<QObject *>(nullptr), QString()); }"
    KALVARO_ANSAGEEREIGNIS)
unset(CMAKE_REQUIRED_LIBRARIES)
unset(CMAKE_REQUIRED_FLAGS)
