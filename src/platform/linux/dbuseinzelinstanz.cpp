#include "platform/linux/dbuseinzelinstanz.h"

#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "platform/linux/signale.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QEvent>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <utility>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

using Antwort = Einzelinstanzsperre::Antwort;
using namespace std::chrono_literals;

constexpr auto frist = 3s;        // for another one to take what this one wants
constexpr auto dienstfrist = 10s; // for what the bus has started this one for

// "D-Bus Specification" 0.38, org.freedesktop.DBus.RequestName: flags and results.
constexpr uint anstellen = 0;
constexpr uint nichtAnstellen = 4;
constexpr uint keineAntwort = 0;
constexpr uint gehoertUns = 1;
constexpr uint gehoerteUns = 4;

const QString anwendungspfad = u"/de/kalvaro/kalvaro"_s;
const QString aktionsfeld = u"aktion"_s; // of the message to the holder of the lock

// As the desktop entry names its actions; opening has no name there. The last two are only between
// our own starts.
QString aktionsname(std::optional<Wunsch> wunsch)
{
    if (!wunsch) {
        return u"nichts"_s;
    }
    switch (*wunsch) {
    case Wunsch::Oeffnen:
        break;
    case Wunsch::Abgleichen:
        return u"abgleichen"_s;
    case Wunsch::Beenden:
        return u"beenden"_s;
    case Wunsch::Hintergrund:
        return u"hintergrund"_s;
    }
    return {};
}

std::optional<Wunsch> wunschNamens(const QString &aktion)
{
    for (const Wunsch wunsch : {Wunsch::Abgleichen, Wunsch::Beenden, Wunsch::Hintergrund}) {
        if (aktion == aktionsname(wunsch)) {
            return wunsch;
        }
    }
    return aktion == aktionsname({}) ? std::nullopt : std::optional(Wunsch::Oeffnen);
}

QByteArray alsNachricht(const Bitte &bitte)
{
    QVariantMap daten = bitte.aktivierung.plattformdaten();
    daten.insert(aktionsfeld, aktionsname(bitte.wunsch));
    return QJsonDocument(QJsonObject::fromVariantMap(daten)).toJson(QJsonDocument::Compact);
}

Bitte ausNachricht(const QByteArray &nachricht)
{
    const QVariantMap daten = QJsonDocument::fromJson(nachricht).object().toVariantMap();
    return {wunschNamens(daten.value(aktionsfeld).toString()),
            Aktivierung::ausPlattformdaten(daten)};
}

// Asks whoever has the name. Absent when that is somebody who does not know what is wanted.
std::optional<Antwort> ueberBus(const QDBusConnection &bus, const Bitte &bitte,
                                const QDeadlineTimer &bis)
{
    const QString aktion = aktionsname(bitte.wunsch);
    QDBusMessage ruf =
        QDBusMessage::createMethodCall(KENNUNG, anwendungspfad, u"org.freedesktop.Application"_s,
                                       aktion.isEmpty() ? u"Activate"_s : u"ActivateAction"_s);
    if (aktion.isEmpty()) {
        ruf.setArguments({bitte.aktivierung.plattformdaten()});
    } else {
        ruf.setArguments({aktion, QVariantList(), bitte.aktivierung.plattformdaten()});
    }
    ruf.setAutoStartService(false);
    const QDBusMessage antwort = bus.call(ruf, QDBus::Block, static_cast<int>(bis.remainingTime()));
    if (antwort.type() == QDBusMessage::ReplyMessage) {
        return Antwort::Angenommen;
    }
    const QString fehler = antwort.errorName();
    if (fehler == u"org.freedesktop.DBus.Error.NoReply") {
        return bis.hasExpired() ? Antwort::Stumm : Antwort::Niemand;
    }
    const bool leer = fehler == u"org.freedesktop.DBus.Error.ServiceUnknown" ||
                      fehler == u"org.freedesktop.DBus.Error.NameHasNoOwner";
    return leer ? std::optional(Antwort::Niemand) : std::nullopt;
}

} // namespace

DBusEinzelinstanz::DBusEinzelinstanz(Aktivierung eigene, const QDBusConnection &sitzung,
                                     QString ordner)
    : eigene_(std::move(eigene))
    , bus_(sitzung)
    , ordner_(std::move(ordner))
{
    new Anwendungsdienst(this);
}

DBusEinzelinstanz::~DBusEinzelinstanz()
{
    nameAufgeben();
}

Belegung DBusEinzelinstanz::belegen(std::optional<Wunsch> wunsch)
{
    sperre_ = std::make_unique<Einzelinstanzsperre>(
        ordner_, [this](const QByteArray &nachricht) { return bitten(ausNachricht(nachricht)); });
    Bitte bitte{wunsch, eigene_};
    QDeadlineTimer bis(frist);
    // A holder may just be opening its socket or ending, and then there is nobody for moments. One
    // that could open none may still be reached over the bus.
    constexpr auto kurz = 5;             // milliseconds
    const QDeadlineTimer nurSocket(500); // milliseconds
    while (!bis.hasExpired()) {
        const auto stand = sperre_->nehmen();
        if (stand == Einzelinstanzsperre::Stand::Unmoeglich) {
            return ohneSperre(bitte, bis);
        }
        if (stand == Einzelinstanzsperre::Stand::Gehalten) {
            if (!wunsch && bitte.wunsch) {
                versaeumt_.push_back(bitte);
            }
            // Who is the first does not depend on the name: when somebody else has it, it is ours
            // as soon as that one ends.
            if (bus_.isConnected() && bitte.wunsch != Wunsch::Beenden) {
                (void)nameNehmen(anstellen);
            }
            return ersteWerden();
        }
        auto antwort = sperre_->fragen(alsNachricht(bitte), bis);
        if (antwort == Antwort::Niemand && nurSocket.hasExpired() && bus_.isConnected()) {
            antwort = ueberBus(bus_, bitte, bis).value_or(Antwort::Niemand);
        }
        if (antwort == Antwort::Angenommen) {
            const auto auftrag = bitte.wunsch ? std::nullopt : botengang();
            if (!auftrag) {
                return Belegung::Uebergeben;
            }
            bitte = *auftrag;
            bis.setRemainingTime(frist);
            continue;
        }
        QThread::msleep(kurz);
    }
    return Belegung::Stumm;
}

Belegung DBusEinzelinstanz::ersteWerden()
{
    erste_ = true;
    qApp->installEventFilter(this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &DBusEinzelinstanz::nameAufgeben);
    return Belegung::Erste;
}

Belegung DBusEinzelinstanz::ohneSperre(const Bitte &bitte, const QDeadlineTimer &bis)
{
    while (bus_.isConnected() && !bis.hasExpired()) {
        const uint name = nameNehmen(nichtAnstellen);
        if (name == gehoertUns || name == gehoerteUns) {
            return ersteWerden();
        }
        nameAufgeben();
        if (name == keineAntwort) {
            break;
        }
        const auto antwort = bitte.wunsch ? ueberBus(bus_, bitte, bis) : Antwort::Angenommen;
        if (antwort == Antwort::Angenommen) {
            return Belegung::Uebergeben;
        }
        if (antwort == Antwort::Stumm) {
            return Belegung::Stumm;
        }
        if (!antwort) { // a stranger has our name, and nobody else can be asked
            break;
        }
    }
    protokoll(u"Keine Sperre in %1 möglich"_s.arg(ordner_));
    return ersteWerden();
}

// The bus has started this one although another one runs, which it does not know: that one came
// before the bus. What for, it says to whoever takes the name; this one only passes it on. One that
// the bus knows has its name once its event loop runs, and then there is nothing to pass on.
std::optional<Bitte> DBusEinzelinstanz::botengang()
{
    std::optional<Bitte> auftrag;
    if (bus_.isConnected() && nameNehmen(nichtAnstellen) == gehoertUns) {
        QEventLoop warten;
        QTimer::singleShot(dienstfrist, &warten, &QEventLoop::quit);
        ruf_ = [&](Wunsch wunsch) {
            auftrag = Bitte{wunsch, Aktivierung::desStarts()};
            warten.quit();
        };
        warten.exec();
        ruf_ = nullptr;
    }
    nameAufgeben();
    return auftrag;
}

// The object is there before the name: whoever finds the name finds it answering.
uint DBusEinzelinstanz::nameNehmen(uint wie)
{
    nameGewollt_ = true;
    bus_.registerObject(anwendungspfad, this, QDBusConnection::ExportAdaptors);
    const QDBusMessage antwort = bus_.call(anDenBus(u"RequestName"_s, {KENNUNG, wie}), QDBus::Block,
                                           static_cast<int>(busfrist.count()));
    return antwort.type() == QDBusMessage::ReplyMessage ? antwort.arguments().value(0).toUInt()
                                                        : keineAntwort;
}

void DBusEinzelinstanz::nameAufgeben()
{
    if (std::exchange(nameGewollt_, false)) {
        bus_.send(anDenBus(u"ReleaseName"_s, {KENNUNG}));
        bus_.unregisterObject(anwendungspfad);
    }
}

void DBusEinzelinstanz::beiWunsch(std::function<void(Wunsch)> ruf)
{
    ruf_ = std::move(ruf);
    if (ruf_) {
        for (const Bitte &bitte : std::exchange(versaeumt_, {})) {
            QMetaObject::invokeMethod(
                this, [this, bitte] { ausfuehren(bitte); }, Qt::QueuedConnection);
        }
    }
}

bool DBusEinzelinstanz::bitten(const Bitte &bitte)
{
    if (endet_ || endesignalWartet()) {
        return false;
    }
    if (bitte.wunsch == Wunsch::Beenden) {
        endeErwarten();
    }
    QMetaObject::invokeMethod(
        this, [this, bitte] { ausfuehren(bitte); }, Qt::QueuedConnection);
    return true;
}

void DBusEinzelinstanz::antworten(const QDBusMessage &ruf, const Bitte &bitte)
{
    if (!bitten(bitte)) {
        ruf.setDelayedReply(true);
        bus_.send(ruf.createErrorReply(KENNUNG + u".Endet"_s, u"kalvaro endet gerade."_s));
    }
}

bool DBusEinzelinstanz::eventFilter(QObject * /*wer*/, QEvent *was)
{
    if (was->type() == QEvent::Quit) {
        endeErwarten();
    }
    return false;
}

// From here on nothing is promised that the end would break. Somebody may refuse to end, though;
// then the event loop still runs later.
void DBusEinzelinstanz::endeErwarten()
{
    constexpr auto dochNicht = 100ms;
    endet_ = true;
    sperre_->ruhen(true);
    QTimer::singleShot(dochNicht, this, [this] {
        endet_ = false;
        sperre_->ruhen(false);
    });
}

void DBusEinzelinstanz::ausfuehren(const Bitte &bitte)
{
    if (!bitte.wunsch) {
        return;
    }
    if (!ruf_) {
        versaeumt_.push_back(bitte);
        return;
    }
    const Aktivierungsrahmen rahmen(bitte.aktivierung);
    ruf_(*bitte.wunsch);
}

Anwendungsdienst::Anwendungsdienst(DBusEinzelinstanz *instanz)
    : QDBusAbstractAdaptor(instanz)
    , instanz_(instanz)
{
}

void Anwendungsdienst::Activate(const QVariantMap &plattformdaten, const QDBusMessage &ruf)
{
    instanz_->antworten(ruf, {Wunsch::Oeffnen, Aktivierung::ausPlattformdaten(plattformdaten)});
}

void Anwendungsdienst::Open(const QStringList & /*adressen*/, const QVariantMap &plattformdaten,
                            const QDBusMessage &ruf)
{
    Activate(plattformdaten, ruf);
}

void Anwendungsdienst::ActivateAction(const QString &name, const QVariantList & /*werte*/,
                                      const QVariantMap &plattformdaten, const QDBusMessage &ruf)
{
    instanz_->antworten(ruf, {wunschNamens(name), Aktivierung::ausPlattformdaten(plattformdaten)});
}

} // namespace kalvaro
