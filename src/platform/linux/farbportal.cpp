#include "platform/linux/farbportal.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QUuid>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int ersteGeduld = 100; // milliseconds
const QString dienst = u"org.freedesktop.portal.Desktop"_s;
const QString objekt = u"/org/freedesktop/portal/desktop"_s;
const QString schnittstelle = u"org.freedesktop.portal.Settings"_s;
const QString bereichFarben = u"org.freedesktop.appearance"_s;
const QString schluesselFarben = u"color-scheme"_s;

// "Read" is the older one of the two, which all versions know.
const QString lesenAlt = u"Read"_s;
const QString lesenNeu = u"ReadOne"_s;

QDBusMessage lesefrage(const QString &methode)
{
    QDBusMessage frage = QDBusMessage::createMethodCall(dienst, objekt, schnittstelle, methode);
    frage.setArguments({bereichFarben, schluesselFarben});
    return frage;
}

// The value lies in one variant, or in two. Values that nobody knows are no wish.
Helligkeit gelesen(QVariant wert)
{
    while (wert.metaType() == QMetaType::fromType<QDBusVariant>()) {
        wert = wert.value<QDBusVariant>().variant();
    }
    constexpr uint dunkel = 1;
    constexpr uint hell = 2;
    if (wert.metaType() != QMetaType::fromType<uint>()) {
        return Helligkeit::Offen;
    }
    return wert.toUInt() == dunkel ? Helligkeit::Dunkel
           : wert.toUInt() == hell ? Helligkeit::Hell
                                   : Helligkeit::Offen;
}

Helligkeit gelesen(const QDBusMessage &antwort)
{
    return gelesen(antwort.arguments().value(0));
}

} // namespace

Farbfrage::Farbfrage(const QString &busadresse)
    : name_(u"farbfrage-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    if (busadresse.isEmpty() || busadresse.startsWith(u"disabled:")) {
        return;
    }
    const QDBusConnection bus = QDBusConnection::connectToBus(busadresse, name_);
    if (bus.isConnected()) {
        ruf_ = bus.asyncCall(lesefrage(lesenAlt), ersteGeduld);
    }
}

Farbfrage::~Farbfrage()
{
    QDBusConnection::disconnectFromBus(name_);
}

std::optional<Helligkeit> Farbfrage::antwort()
{
    if (!ruf_) {
        return Helligkeit::Offen;
    }
    ruf_->waitForFinished();
    const QDBusMessage antwort = ruf_->reply();
    if (antwort.type() == QDBusMessage::ReplyMessage) {
        return gelesen(antwort);
    }
    switch (ruf_->error().type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
        return Helligkeit::Offen;
    default:
        return std::nullopt;
    }
}

Farbportal::Farbportal(const QDBusConnection &sitzung, std::optional<Helligkeit> bisher,
                       std::function<void()> gewechselt)
    : bus_(sitzung)
    , gewechselt_(std::move(gewechselt))
    , stand_(bisher.value_or(Helligkeit::Offen))
{
    if (!bus_.isConnected()) {
        return;
    }
    // Qt finds a slot's types by their names, and knows this one's only once it was met.
    qRegisterMetaType<QDBusVariant>();
    bus_.connect(dienst, objekt, schnittstelle, u"SettingChanged"_s,
                 {bereichFarben, schluesselFarben}, u"ssv"_s, this,
                 SLOT(geaendert(QString, QString, QDBusVariant)));
    if (!bisher) {
        fragen(lesenAlt);
    }
}

void Farbportal::fragen(const QString &methode)
{
    auto *const warten = new QDBusPendingCallWatcher(bus_.asyncCall(lesefrage(methode)), this);
    connect(warten, &QDBusPendingCallWatcher::finished, this, [this, methode, warten] {
        warten->deleteLater();
        if (warten->reply().type() == QDBusMessage::ReplyMessage) {
            setzen(gelesen(warten->reply()));
        } else if (methode == lesenAlt && warten->error().type() == QDBusError::UnknownMethod) {
            fragen(lesenNeu);
        }
    });
}

void Farbportal::geaendert(const QString & /*bereich*/, const QString & /*schluessel*/,
                           const QDBusVariant &wert)
{
    setzen(gelesen(wert.variant()));
}

void Farbportal::setzen(Helligkeit neu)
{
    if (neu != stand_) {
        stand_ = neu;
        gewechselt_();
    }
}

} // namespace kalvaro
