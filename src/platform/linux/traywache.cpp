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

Traywache::Traywache(Uhr &uhr, const QDBusConnection &sitzung, XEmbedtray &xembed,
                     std::function<void(Trayart)> gefunden)
    : uhr_(uhr)
    , bus_(sitzung)
    , xembed_(xembed)
    , gefunden_(std::move(gefunden))
{
    if (bus_.isConnected()) {
        waechter_.setConnection(bus_);
        waechter_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
        waechter_.addWatchedService(dienst);
        connect(&waechter_, &QDBusServiceWatcher::serviceRegistered, this, [this] {
            fragen_ = 0;
            hostFragen();
        });
        bus_.connect({}, pfad, dienst, u"StatusNotifierHostRegistered"_s, this, SLOT(hostFragen()));
        hostFragen();
    }
    xembed_.beiErscheinen([this] { xembedErschienen(); });
    if (xembed_.vorhanden()) {
        xembedErschienen();
    }
}

void Traywache::hostFragen()
{
    if (!gefunden_) {
        return;
    }
    QDBusMessage frage = QDBusMessage::createMethodCall(
        dienst, pfad, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    frage.setArguments({dienst, u"IsStatusNotifierHostRegistered"_s});
    frage.setAutoStartService(false);
    auto *antwort = new QDBusPendingCallWatcher(bus_.asyncCall(frage), this);
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
    } else if (gescheitert && ++fragen_ < hoechstens) {
        nocheinmal_ = uhr_.nach(abstand, [this] { hostFragen(); });
    }
}

void Traywache::xembedErschienen()
{
    const Sekunden dauer = bus_.isConnected() ? bedenken : Sekunden(0);
    bedenkzeit_ = uhr_.nach(dauer, [this] {
        if (xembed_.vorhanden()) {
            melden(Trayart::XEmbed);
        }
    });
}

void Traywache::melden(Trayart art)
{
    if (gefunden_) {
        std::exchange(gefunden_, {})(art);
    }
}

} // namespace kalvaro
