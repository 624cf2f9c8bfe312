#include "doubles/ereignisse.h"

#include <QCoreApplication>
#include <QEvent>

namespace kalvaro {

namespace {

constexpr int schritte = 20;

} // namespace

void ereignisseAbarbeiten()
{
    for (int i = 0; i < schritte; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void postAbarbeiten()
{
    for (int i = 0; i < schritte; ++i) {
        QCoreApplication::sendPostedEvents();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace kalvaro
