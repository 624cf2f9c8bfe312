#include "doubles/mitteilungsserver.h"

#include <QDBusMessage>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString dienst = u"org.freedesktop.Notifications"_s;
const QString pfad = u"/org/freedesktop/Notifications"_s;

} // namespace

Mitteilungsserver::Mitteilungsserver(const QDBusConnection &sitzung, QStringList faehigkeiten)
    : bus(sitzung)
    , kann(std::move(faehigkeiten))
{
    if (!bus.registerObject(pfad, this, QDBusConnection::ExportAllSlots) ||
        !bus.registerService(dienst)) {
        qFatal("The notification server's name is taken");
    }
}

Mitteilungsserver::~Mitteilungsserver()
{
    bus.unregisterService(dienst);
    bus.unregisterObject(pfad);
}

QStringList Mitteilungsserver::GetCapabilities()
{
    ++gefragt;
    if (stumm) {
        setDelayedReply(true);
    }
    return kann;
}

QString Mitteilungsserver::GetServerInformation(QString &hersteller, QString &fassung,
                                                QString &norm)
{
    if (stumm) {
        setDelayedReply(true);
    }
    hersteller = u"kalvaro"_s;
    fassung = u"2.7"_s;
    norm = u"1.2"_s;
    return u"Testdienst"_s;
}

uint Mitteilungsserver::Notify(const QString &programm, uint ersetzt, const QString &symbol,
                               const QString &titel, const QString &inhalt,
                               const QStringList &aktionen, const QVariantMap &hinweise, int dauer)
{
    erhalten.append(
        {++letzte, programm, ersetzt, symbol, titel, inhalt, aktionen, hinweise, dauer});
    if (stumm) {
        setDelayedReply(true);
    }
    return letzte;
}

void Mitteilungsserver::klicken(uint id, const QString &marke, const QString &aktion)
{
    if (!marke.isEmpty()) {
        melden(u"ActivationToken"_s, {id, marke});
    }
    melden(u"ActionInvoked"_s, {id, aktion});
}

void Mitteilungsserver::schliessen(uint id)
{
    const uint vomBenutzer = 2;
    melden(u"NotificationClosed"_s, {id, vomBenutzer});
}

void Mitteilungsserver::melden(const QString &signal, const QVariantList &werte)
{
    QDBusMessage nachricht = QDBusMessage::createSignal(pfad, dienst, signal);
    nachricht.setArguments(werte);
    bus.send(nachricht);
}

} // namespace kalvaro
