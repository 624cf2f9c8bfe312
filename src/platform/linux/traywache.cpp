#include "platform/linux/traywache.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString dienst = u"org.kde.StatusNotifierWatcher"_s;
const QString pfad = u"/StatusNotifierWatcher"_s;

constexpr Sekunden bedenken{2};

} // namespace

Traywache::Traywache(Uhr &zeit, const QDBusConnection &sitzung, XEmbedtray &tray,
                     std::function<void(Trayart)> gefunden)
    : uhr(zeit)
    , bus(sitzung)
    , xembed(tray)
    , ruf(std::move(gefunden))
{
    if (bus.isConnected()) {
        waechter.setConnection(bus);
        waechter.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
        waechter.addWatchedService(dienst);
        connect(&waechter, &QDBusServiceWatcher::serviceRegistered, this, [this] {
            fragen = 0;
            hostFragen();
        });
        bus.connect({}, pfad, dienst, u"StatusNotifierHostRegistered"_s, this, SLOT(hostFragen()));
        hostFragen();
    }
    xembed.beiErscheinen([this] { xembedErschienen(); });
    if (xembed.vorhanden()) {
        xembedErschienen();
    }
}

void Traywache::hostFragen()
{
    if (!ruf) {
        return;
    }
    QDBusMessage frage = QDBusMessage::createMethodCall(
        dienst, pfad, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    frage.setArguments({dienst, u"IsStatusNotifierHostRegistered"_s});
    frage.setAutoStartService(false);
    auto *antwort = new QDBusPendingCallWatcher(bus.asyncCall(frage), this);
    connect(antwort, &QDBusPendingCallWatcher::finished, this, [this, antwort] {
        antwort->deleteLater();
        const QDBusPendingReply<QVariant> da = *antwort;
        const bool keiner = da.isError() && da.error().type() == QDBusError::ServiceUnknown;
        hostAntwort(!da.isError() && da.value().toBool(), da.isError() && !keiner);
    });
}

// A watcher may have its name a moment before it has its object.
void Traywache::hostAntwort(bool da, bool gescheitert)
{
    constexpr int hoechstens = 5;
    constexpr Sekunden abstand{1};
    if (da) {
        melden(Trayart::StatusNotifier);
    } else if (gescheitert && ++fragen < hoechstens) {
        nocheinmal = uhr.nach(abstand, [this] { hostFragen(); });
    }
}

void Traywache::xembedErschienen()
{
    const Sekunden dauer = bus.isConnected() ? bedenken : Sekunden(0);
    bedenkzeit = uhr.nach(dauer, [this] {
        if (xembed.vorhanden()) {
            melden(Trayart::XEmbed);
        }
    });
}

void Traywache::melden(Trayart art)
{
    if (ruf) {
        std::exchange(ruf, {})(art);
    }
}

} // namespace kalvaro
