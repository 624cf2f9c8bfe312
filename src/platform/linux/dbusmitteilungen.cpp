#include "platform/linux/dbusmitteilungen.h"

#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "platform/linux/dbusaktivierung.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString dienst = u"org.freedesktop.Notifications"_s;
const QString dienstpfad = u"/org/freedesktop/Notifications"_s;

constexpr qsizetype titelLaenge = 200; // characters; no server shows more
constexpr qsizetype inhaltLaenge = 2000;
constexpr qsizetype hoechstensOffen = 100; // for servers that never tell what they closed

// Without what XML forbids in text (servers feed the body to an XML parser), and no longer than
// `hoechstens`.
QString gekuerzt(const QString &text, qsizetype hoechstens)
{
    QString kurz = text.left(hoechstens + 1);
    for (QChar &zeichen : kurz) {
        const bool erlaubt = zeichen == u'\n' || zeichen == u'\t' ||
                             (zeichen.unicode() >= 0x20 && zeichen.unicode() < 0xFFFE);
        if (!erlaubt) {
            zeichen = u' ';
        }
    }
    if (kurz.size() > hoechstens) {
        const bool paar = kurz.at(hoechstens - 2).isHighSurrogate();
        kurz.truncate(hoechstens - (paar ? 2 : 1));
        kurz += u'…';
    }
    return kurz;
}

QString einzeilig(QString text)
{
    return text.replace(u'\n', u' ').replace(u'\t', u' ');
}

void verloren(const QString &titel, const QString &inhalt, const QString &grund)
{
    protokoll(u"Mitteilung nicht zugestellt: %1 – %2 (%3)"_s.arg(
        titel, einzeilig(inhalt), einzeilig(gekuerzt(grund, titelLaenge))));
}

QDBusMessage anServer(const QString &methode, const QVariantList &argumente)
{
    QDBusMessage ruf = QDBusMessage::createMethodCall(dienst, dienstpfad, dienst, methode);
    ruf.setArguments(argumente);
    return ruf;
}

} // namespace

DBusMitteilungen::DBusMitteilungen(const QDBusConnection &sitzung, int frist)
    : bus_(sitzung)
    , frist_(frist)
{
    if (!bus_.isConnected()) {
        return;
    }
    waechter_.setConnection(bus_);
    waechter_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    waechter_.addWatchedService(dienst);
    connect(&waechter_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &neuer) {
                serverGewechselt(neuer);
            });
    signaleAbonnieren();
}

// From whoever sends them: which server a signal comes from is told by its unique name.
void DBusMitteilungen::signaleAbonnieren()
{
    bus_.connect({}, dienstpfad, dienst, u"ActionInvoked"_s, this,
                 SLOT(gewaehlt(uint, QString, QDBusMessage)));
    bus_.connect({}, dienstpfad, dienst, u"ActivationToken"_s, this,
                 SLOT(markeErhalten(uint, QString, QDBusMessage)));
    bus_.connect({}, dienstpfad, dienst, u"NotificationClosed"_s, this,
                 SLOT(geschlossen(uint, uint, QDBusMessage)));
}

void DBusMitteilungen::mitteilen(const QString &titel, const QString &inhalt,
                                 const std::optional<QString> &ziel)
{
    const Nachricht nachricht = {einzeilig(gekuerzt(titel, titelLaenge)),
                                 gekuerzt(inhalt, inhaltLaenge), ziel};
    if (!bus_.isConnected()) {
        verloren(nachricht.titel, nachricht.inhalt, u"kein Sitzungsbus"_s);
        return;
    }
    switch (stand_) {
    case Faehigkeiten::Bekannt:
        senden(nachricht);
        return;
    case Faehigkeiten::Unbekannt:
        erfragen();
        [[fallthrough]];
    case Faehigkeiten::Erfragt:
        wartende_.append(nachricht);
    }
}

void DBusMitteilungen::beiKlick(std::function<void(const QString &)> geklickt)
{
    klick_ = std::move(geklickt);
}

void DBusMitteilungen::erfragen()
{
    stand_ = Faehigkeiten::Erfragt;
    gewechselt_ = false;
    inhaberErfragen();
    auto *antwort = new QDBusPendingCallWatcher(
        bus_.asyncCall(anServer(u"GetCapabilities"_s, {}), frist_), this);
    connect(antwort, &QDBusPendingCallWatcher::finished, this, &DBusMitteilungen::erfragt);
}

// A reply does not tell who sent it, but the bus tells who owns the name, in the order in which it
// delivers the replies.
void DBusMitteilungen::inhaberErfragen()
{
    auto *antwort = new QDBusPendingCallWatcher(
        bus_.asyncCall(anDenBus(u"GetNameOwner"_s, {dienst}), frist_), this);
    connect(antwort, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *fertig) {
                fertig->deleteLater();
                if (const QDBusPendingReply<QString> inhaber = *fertig; !inhaber.isError()) {
                    server_ = inhaber.value();
                }
            });
}

void DBusMitteilungen::erfragt(QDBusPendingCallWatcher *antwort)
{
    antwort->deleteLater();
    const QDBusPendingReply<QStringList> liste = *antwort;
    if (liste.isError() && gewechselt_) {
        erfragen();
        return;
    }
    const QList<Nachricht> faellig = std::exchange(wartende_, {});
    if (liste.isError()) {
        stand_ = Faehigkeiten::Unbekannt;
        for (const Nachricht &nachricht : faellig) {
            verloren(nachricht.titel, nachricht.inhalt, liste.error().message());
        }
        return;
    }
    stand_ = Faehigkeiten::Bekannt;
    auszeichnung_ = liste.value().contains(u"body-markup"_s);
    aktionen_ = liste.value().contains(u"actions"_s);
    for (const Nachricht &nachricht : faellig) {
        senden(nachricht);
    }
}

void DBusMitteilungen::senden(const Nachricht &nachricht)
{
    const bool klickbar = nachricht.ziel && aktionen_;
    const QStringList knoepfe = klickbar ? QStringList({u"default"_s, u"Öffnen"_s}) : QStringList();
    const uchar dringlichkeit = 1; // normal
    const QVariantMap angaben = {{u"desktop-entry"_s, KENNUNG},
                                 {u"urgency"_s, QVariant::fromValue(dringlichkeit)}};
    const QString inhalt = auszeichnung_ ? nachricht.inhalt.toHtmlEscaped() : nachricht.inhalt;
    const uint ersetzt = 0;
    const int anzeigedauer = -1; // as the server likes
    const QDBusMessage ruf = anServer(u"Notify"_s, {u"kalvaro"_s, ersetzt, KENNUNG, nachricht.titel,
                                                    inhalt, knoepfe, angaben, anzeigedauer});
    auto *antwort = new QDBusPendingCallWatcher(bus_.asyncCall(ruf, frist_), this);
    connect(antwort, &QDBusPendingCallWatcher::finished, this,
            [this, nachricht, an = server_](QDBusPendingCallWatcher *fertig) {
                gesendet(nachricht, an, fertig);
            });
}

void DBusMitteilungen::gesendet(const Nachricht &nachricht, const QString &an,
                                QDBusPendingCallWatcher *antwort)
{
    antwort->deleteLater();
    const QDBusPendingReply<uint> id = *antwort;
    if (id.isError()) {
        verloren(nachricht.titel, nachricht.inhalt, id.error().message());
        return;
    }
    if (nachricht.ziel && an == server_) {
        gezeigt_.append({server_, id.value(), *nachricht.ziel, {}});
        gezeigt_.remove(0, std::max<qsizetype>(0, gezeigt_.size() - hoechstensOffen));
    }
}

void DBusMitteilungen::serverGewechselt(const QString &neuer)
{
    gewechselt_ = !neuer.isEmpty();
    if (neuer != server_) {
        server_ = neuer;
        stand_ = stand_ == Faehigkeiten::Bekannt ? Faehigkeiten::Unbekannt : stand_;
        gezeigt_.removeIf([&neuer](const Gezeigte &eine) { return eine.server != neuer; });
    }
}

DBusMitteilungen::Gezeigte *DBusMitteilungen::finden(uint id, const QDBusMessage &signal)
{
    const auto ort = std::find_if(gezeigt_.begin(), gezeigt_.end(), [&](const Gezeigte &eine) {
        return eine.id == id && eine.server == signal.service();
    });
    return ort == gezeigt_.end() ? nullptr : &*ort;
}

void DBusMitteilungen::markeErhalten(uint id, const QString &marke, const QDBusMessage &signal)
{
    if (Gezeigte *eine = finden(id, signal)) {
        eine->marke = Aktivierung::ausPlattformdaten({{u"activation-token"_s, marke}}).marke;
    }
}

void DBusMitteilungen::gewaehlt(uint id, const QString &aktion, const QDBusMessage &signal)
{
    Gezeigte *eine = finden(id, signal);
    if (eine == nullptr || aktion != u"default" || !klick_) {
        return;
    }
    const QString ziel = eine->ziel;
    const Aktivierungsrahmen rahmen({std::exchange(eine->marke, {}), {}});
    klick_(ziel);
}

void DBusMitteilungen::geschlossen(uint id, uint /*grund*/, const QDBusMessage &signal)
{
    if (const Gezeigte *eine = finden(id, signal)) {
        gezeigt_.remove(eine - gezeigt_.constData());
    }
}

} // namespace kalvaro
