#include "doubles/statushost.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString dienst = u"org.kde.StatusNotifierWatcher"_s;
const QString element = u"org.kde.StatusNotifierItem"_s;
const QString menuedienst = u"com.canonical.dbusmenu"_s;

// (ia{sv}av), the rows wrapped in variants.
Menuezeile zeile(const QDBusArgument &wert)
{
    Menuezeile eine;
    wert.beginStructure();
    wert >> eine.id >> eine.angaben;
    wert.beginArray();
    while (!wert.atEnd()) {
        QDBusVariant kind;
        wert >> kind;
        eine.kinder.append(zeile(kind.variant().value<QDBusArgument>()));
    }
    wert.endArray();
    wert.endStructure();
    return eine;
}

// a(iiay)
QList<Pixmap> pixmapliste(const QDBusArgument &wert)
{
    QList<Pixmap> liste;
    wert.beginArray();
    while (!wert.atEnd()) {
        Pixmap eine;
        wert.beginStructure();
        wert >> eine.breite >> eine.hoehe >> eine.bytes;
        wert.endStructure();
        liste.append(eine);
    }
    wert.endArray();
    return liste;
}

} // namespace

Statushost::Statushost(const QDBusConnection &sitzung, bool mitHost)
    : bus(sitzung)
    , host(mitHost)
{
    waechter.setConnection(bus);
    waechter.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&waechter, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString &weg) {
        angemeldet.removeAll(weg);
        Q_EMIT StatusNotifierItemUnregistered(weg);
    });
    if (!bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                            QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSlots |
                                QDBusConnection::ExportAllSignals) ||
        !bus.registerService(dienst)) {
        qFatal("The tray's name is taken");
    }
}

Statushost::~Statushost()
{
    bus.unregisterService(dienst);
    bus.unregisterObject(u"/StatusNotifierWatcher"_s);
}

void Statushost::hostAnmelden()
{
    host = true;
    Q_EMIT StatusNotifierHostRegistered();
}

void Statushost::hostAbmelden()
{
    host = false;
    Q_EMIT StatusNotifierHostUnregistered();
}

void Statushost::RegisterStatusNotifierItem(const QString &wer)
{
    const QString name = wer.startsWith(u'/') ? message().service() : wer;
    waechter.addWatchedService(name);
    angemeldet.append(name);
    Q_EMIT StatusNotifierItemRegistered(name);
}

void Statushost::RegisterStatusNotifierHost(const QString & /*wer*/)
{
    hostAnmelden();
}

QDBusMessage Statushost::rufen(const QString &pfad, const QString &schnittstelle,
                               const QString &methode, const QVariantList &werte) const
{
    QDBusMessage ruf =
        QDBusMessage::createMethodCall(angemeldet.value(0), pfad, schnittstelle, methode);
    ruf.setArguments(werte);
    return bus.call(ruf, QDBus::Block, 5000);
}

QVariant Statushost::eigenschaft(const QString &name) const
{
    const QDBusMessage antwort = rufen(
        u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {element, name});
    return antwort.arguments().value(0).value<QDBusVariant>().variant();
}

QList<Pixmap> Statushost::pixmaps() const
{
    return pixmapliste(eigenschaft(u"IconPixmap"_s).value<QDBusArgument>());
}

QString Statushost::hinweis() const
{
    const auto wert = eigenschaft(u"ToolTip"_s).value<QDBusArgument>();
    QString symbol;
    QString titel;
    wert.beginStructure();
    wert >> symbol;
    (void)pixmapliste(wert);
    wert >> titel;
    wert.endStructure();
    return titel;
}

void Statushost::klicken() const
{
    [[maybe_unused]] const auto antwort =
        rufen(u"/StatusNotifierItem"_s, element, u"Activate"_s, {10, 10});
}

void Statushost::markeGeben(const QString &marke) const
{
    [[maybe_unused]] const auto antwort =
        rufen(u"/StatusNotifierItem"_s, element, u"ProvideXdgActivationToken"_s, {marke});
}

QString Statushost::menuepfad() const
{
    return eigenschaft(u"Menu"_s).value<QDBusObjectPath>().path();
}

void Statushost::menueOeffnen() const
{
    [[maybe_unused]] const auto antwort = rufen(menuepfad(), menuedienst, u"AboutToShow"_s, {0});
}

QList<Menuezeile> Statushost::menue() const
{
    const QDBusMessage antwort =
        rufen(menuepfad(), menuedienst, u"GetLayout"_s, {0, -1, QStringList()});
    const auto wurzel = antwort.arguments().value(1).value<QDBusArgument>();
    return antwort.arguments().size() < 2 ? QList<Menuezeile>() : zeile(wurzel).kinder;
}

void Statushost::menueKlicken(int id) const
{
    const uint zeitpunkt = 0;
    [[maybe_unused]] const auto antwort =
        rufen(menuepfad(), menuedienst, u"Event"_s,
              {id, u"clicked"_s, QVariant::fromValue(QDBusVariant(u""_s)), zeitpunkt});
}

} // namespace kalvaro
