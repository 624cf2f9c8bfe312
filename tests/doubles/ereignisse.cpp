#include "doubles/ereignisse.h"

#include <QCoreApplication>
#include <QEvent>

namespace kalvaro {

void ereignisseAbarbeiten()
{
    constexpr int schritte = 20;
    for (int i = 0; i < schritte; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace kalvaro
