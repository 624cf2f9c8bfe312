#include "platform/linux/vorlesebus.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Qt's connection to the accessibility bus, and its paths there. Where Qt calls them otherwise,
// nothing is sent.
const QString zugangsbus = u"a11y"_s;
const QString zugangspfad = u"/org/a11y/atspi/accessible/%1"_s;

struct Zugangsnachricht
{
    QString art;
    QString was;
    bool an = false;
    QString inhalt;
};

void zugangSenden(QAccessibleInterface *zugang, const Zugangsnachricht &n)
{
    const QDBusConnection bus(zugangsbus);
    if (bus.isConnected()) {
        QDBusMessage signal =
            QDBusMessage::createSignal(zugangspfad.arg(QAccessible::uniqueId(zugang)),
                                       u"org.a11y.atspi.Event.Object"_s, n.art);
        signal.setArguments(
            {n.was, n.an ? 1 : 0, 0, QVariant::fromValue(QDBusVariant(n.inhalt)), QVariantMap()});
        bus.send(signal);
    }
}

void ergaenzen(QAccessibleEvent *ereignis)
{
    QAccessibleInterface *const zugang = ereignis->accessibleInterface();
    if (zugang == nullptr || !zugang->isValid()) {
        return;
    }
    if (ereignis->type() == QAccessible::DescriptionChanged) {
        zugangSenden(zugang, {u"PropertyChange"_s, u"accessible-description"_s, false,
                              zugang->text(QAccessible::Description)});
    } else if (static_cast<QAccessibleStateChangeEvent *>(ereignis)->changedStates().expanded) {
        const QAccessible::State stand = zugang->state();
        zugangSenden(zugang, {u"StateChanged"_s, u"expanded"_s, stand.expanded != 0, {}});
        zugangSenden(zugang, {u"StateChanged"_s, u"collapsed"_s, stand.collapsed != 0, {}});
    }
}

// A newer Qt may say it as well; screen readers speak a state that they know already only once.
void weitergeben(QAccessibleEvent *ereignis)
{
    // Without a handler it goes to Qt's own bridge.
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(ereignis);
    QAccessible::installUpdateHandler(weitergeben);
    if (ereignis->type() == QAccessible::StateChanged ||
        ereignis->type() == QAccessible::DescriptionChanged) {
        ergaenzen(ereignis);
    }
}

} // namespace

void vorlesebusEinrichten()
{
    QAccessible::installUpdateHandler(weitergeben);
}

} // namespace kalvaro
