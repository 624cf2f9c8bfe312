#include "platform/linux/traywache.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString dienst = u"org.kde.StatusNotifierWatcher"_s;
const QString pfad = u"/StatusNotifierWatcher"_s;

const QString hostname = u"org.kde.StatusNotifierHost-"_s;

constexpr Sekunden bedenken{2};

} // namespace

Traywache::Traywache(Uhr &uhr, const QDBusConnection &sitzung, XEmbedtray &xembed,
                     std::function<void(std::optional<Trayart>)> gewechselt)
    : uhr_(uhr)
    , bus_(sitzung)
    , xembed_(xembed)
    , gewechselt_(std::move(gewechselt))
{
    if (bus_.isConnected()) {
        waechter_.setConnection(bus_);
        waechter_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
        waechter_.addWatchedService(u"org.kde*"_s); // and all below it
        connect(&waechter_, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString &name, const QString &, const QString &neuer) {
                    if (name == dienst) {
                        waechterGewechselt(!neuer.isEmpty());
                    } else if (name.startsWith(hostname)) {
                        hostnameGewechselt(name, !neuer.isEmpty());
                    }
                });
        for (const QString &signal :
             {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
            bus_.connect({}, pfad, dienst, signal, this, SLOT(hostFragen()));
        }
        namenFragen();
        hostFragen();
    }
    xembed_.beiWechsel([this] { xembedGewechselt(); });
    xembedAbwarten();
}

void Traywache::namenFragen()
{
    auto *antwort = new QDBusPendingCallWatcher(bus_.asyncCall(anDenBus(u"ListNames"_s, {})), this);
    connect(antwort, &QDBusPendingCallWatcher::finished, this, [this, antwort] {
        antwort->deleteLater();
        const QDBusPendingReply<QStringList> namen = *antwort;
        if (!namen.isError()) {
            for (const auto alle = namen.value(); const QString &name : alle) {
                if (name.startsWith(hostname)) {
                    hosts_.insert(name);
                    hostsMitNamen_ = true;
                }
            }
        }
    });
}

void Traywache::hostnameGewechselt(const QString &name, bool da)
{
    if (da) {
        hosts_.insert(name);
        hostsMitNamen_ = true;
        hostFragen();
    } else if (hosts_.remove(name) && hosts_.isEmpty()) {
        hostVerloren();
    }
}

// Another watcher knows nothing of the item that the last one had.
void Traywache::waechterGewechselt(bool da)
{
    fragen_ = 0;
    hostsMitNamen_ = !hosts_.isEmpty();
    hostVerloren();
    if (da) {
        hostFragen();
    }
}

void Traywache::hostFragen()
{
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
    if (da && (!hostsMitNamen_ || !hosts_.isEmpty())) {
        melden(Trayart::StatusNotifier);
        return;
    }
    hostVerloren();
    if (gescheitert && ++fragen_ < hoechstens) {
        nocheinmal_ = uhr_.nach(abstand, [this] { hostFragen(); });
    }
}

void Traywache::hostVerloren()
{
    if (art_ == Trayart::StatusNotifier) {
        melden({});
        xembedAbwarten();
    }
}

void Traywache::xembedGewechselt()
{
    if (art_ == Trayart::XEmbed && !xembed_.vorhanden()) {
        melden({});
    } else if (art_) {
        gewechselt_(art_);
    } else {
        xembedAbwarten();
    }
}

void Traywache::xembedAbwarten()
{
    if (!xembed_.vorhanden()) {
        return;
    }
    const Sekunden dauer = bus_.isConnected() ? bedenken : Sekunden(0);
    bedenkzeit_ = uhr_.nach(dauer, [this] {
        if (!art_ && xembed_.vorhanden()) {
            melden(Trayart::XEmbed);
        }
    });
}

void Traywache::melden(std::optional<Trayart> art)
{
    if (std::exchange(art_, art) != art) {
        gewechselt_(art);
    }
}

} // namespace kalvaro
