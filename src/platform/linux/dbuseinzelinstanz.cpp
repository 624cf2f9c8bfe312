#include "platform/linux/dbuseinzelinstanz.h"

#include "foundation/datenordner.h"
#include "foundation/konstanten.h"
#include "foundation/protokoll.h"
#include "platform/linux/einzelinstanzsperre.h"

#include <QDBusMessage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int busfrist = 1000; // milliseconds for an answer over the bus

const QString anwendungspfad = u"/de/kalvaro/kalvaro"_s;
const QString aktionsfeld = u"aktion"_s; // of the message to the holder of the lock

// As the desktop entry names its actions; opening has no name there. The last one is only between
// our own starts.
QString aktionsname(Wunsch wunsch)
{
    switch (wunsch) {
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

Wunsch wunschNamens(const QString &aktion)
{
    for (const Wunsch wunsch : {Wunsch::Abgleichen, Wunsch::Beenden, Wunsch::Hintergrund}) {
        if (aktion == aktionsname(wunsch)) {
            return wunsch;
        }
    }
    return Wunsch::Oeffnen;
}

} // namespace

QString sperrordner()
{
    const QByteArray laufzeit = qgetenv("XDG_RUNTIME_DIR");
    const bool taugt = laufzeit.startsWith('/') && ::access(laufzeit.constData(), W_OK | X_OK) == 0;
    return taugt ? QString::fromLocal8Bit(laufzeit) : appOrdner();
}

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
    if (nameGehalten_) {
        bus_.send(anDenBus(u"ReleaseName"_s, {KENNUNG}));
        bus_.unregisterObject(anwendungspfad);
    }
}

bool DBusEinzelinstanz::belegen(std::optional<Wunsch> wunsch)
{
    const auto ergebnis = bus_.isConnected() ? ueberBus(wunsch) : std::nullopt;
    return ergebnis ? *ergebnis : ueberSperre(wunsch);
}

void DBusEinzelinstanz::beiWunsch(std::function<void(Wunsch)> ruf)
{
    ruf_ = std::move(ruf);
    if (ruf_) {
        for (const Bitte &bitte : std::exchange(versaeumt_, {})) {
            bitten(bitte.wunsch, bitte.aktivierung);
        }
    }
}

void DBusEinzelinstanz::bitten(Wunsch wunsch, const Aktivierung &aktivierung)
{
    QMetaObject::invokeMethod(
        this, [this, bitte = Bitte{wunsch, aktivierung}] { ausfuehren(bitte); },
        Qt::QueuedConnection);
}

void DBusEinzelinstanz::ausfuehren(const Bitte &bitte)
{
    if (!ruf_) {
        versaeumt_.push_back(bitte);
        return;
    }
    const Aktivierungsrahmen rahmen(bitte.aktivierung);
    ruf_(bitte.wunsch);
}

// Absent when the bus does not decide it. The object is there before the name: whoever finds the
// name finds it answering.
std::optional<bool> DBusEinzelinstanz::ueberBus(std::optional<Wunsch> wunsch)
{
    bus_.registerObject(anwendungspfad, this, QDBusConnection::ExportAdaptors);
    constexpr int versuche = 3; // the first one may end just while we ask it
    std::optional<bool> allein;
    for (int i = 0; i < versuche; ++i) {
        allein = nameNehmen();
        if (!allein || *allein || !wunsch || ersteBitten(*wunsch)) {
            break;
        }
    }
    nameGehalten_ = allein.value_or(false);
    if (!nameGehalten_) {
        bus_.unregisterObject(anwendungspfad);
    }
    return allein;
}

// "D-Bus Specification" 0.38, org.freedesktop.DBus.RequestName.
std::optional<bool> DBusEinzelinstanz::nameNehmen()
{
    constexpr uint nichtAnstellen = 4; // DBUS_NAME_FLAG_DO_NOT_QUEUE
    const QDBusMessage antwort =
        bus_.call(anDenBus(u"RequestName"_s, {KENNUNG, nichtAnstellen}), QDBus::Block, busfrist);
    if (antwort.type() != QDBusMessage::ReplyMessage) {
        return {};
    }
    const uint ergebnis = antwort.arguments().value(0).toUInt();
    return ergebnis == 1 || ergebnis == 4; // primary owner; already was
}

// False when there is nobody any more. One that is too busy to answer has the request all the same.
bool DBusEinzelinstanz::ersteBitten(Wunsch wunsch) const
{
    const QString aktion = aktionsname(wunsch);
    QDBusMessage bitte =
        QDBusMessage::createMethodCall(KENNUNG, anwendungspfad, u"org.freedesktop.Application"_s,
                                       aktion.isEmpty() ? u"Activate"_s : u"ActivateAction"_s);
    if (aktion.isEmpty()) {
        bitte.setArguments({eigene_.plattformdaten()});
    } else {
        bitte.setArguments({aktion, QVariantList(), eigene_.plattformdaten()});
    }
    bitte.setAutoStartService(false);
    const QDBusMessage antwort = bus_.call(bitte, QDBus::Block, busfrist);
    return antwort.errorName() != u"org.freedesktop.DBus.Error.ServiceUnknown" &&
           antwort.errorName() != u"org.freedesktop.DBus.Error.NameHasNoOwner";
}

bool DBusEinzelinstanz::ueberSperre(std::optional<Wunsch> wunsch)
{
    sperre_ = std::make_unique<Einzelinstanzsperre>(ordner_, [this](const QByteArray &nachricht) {
        const QVariantMap daten = QJsonDocument::fromJson(nachricht).object().toVariantMap();
        bitten(wunschNamens(daten.value(aktionsfeld).toString()),
               Aktivierung::ausPlattformdaten(daten));
    });
    QVariantMap daten = eigene_.plattformdaten();
    daten.insert(aktionsfeld, aktionsname(wunsch.value_or(Wunsch::Oeffnen)));
    const QByteArray bitte = QJsonDocument(QJsonObject::fromVariantMap(daten)).toJson();
    // Between taking the lock and opening the socket, and between closing both, lie microseconds.
    constexpr int versuche = 20;
    for (int i = 0; i < versuche; ++i) {
        switch (sperre_->nehmen()) {
        case Einzelinstanzsperre::Stand::Gehalten:
            return true;
        case Einzelinstanzsperre::Stand::Unmoeglich:
            protokoll(u"Keine Sperre in %1 möglich"_s.arg(ordner_));
            return true;
        case Einzelinstanzsperre::Stand::Vergeben:
            if (!wunsch || sperre_->senden(bitte)) {
                return false;
            }
        }
        QThread::msleep(5);
    }
    return false;
}

Anwendungsdienst::Anwendungsdienst(DBusEinzelinstanz *instanz)
    : QDBusAbstractAdaptor(instanz)
    , instanz_(instanz)
{
}

void Anwendungsdienst::Activate(const QVariantMap &plattformdaten)
{
    instanz_->bitten(Wunsch::Oeffnen, Aktivierung::ausPlattformdaten(plattformdaten));
}

void Anwendungsdienst::Open(const QStringList & /*adressen*/, const QVariantMap &plattformdaten)
{
    Activate(plattformdaten);
}

void Anwendungsdienst::ActivateAction(const QString &name, const QVariantList & /*werte*/,
                                      const QVariantMap &plattformdaten)
{
    instanz_->bitten(wunschNamens(name), Aktivierung::ausPlattformdaten(plattformdaten));
}

} // namespace kalvaro
