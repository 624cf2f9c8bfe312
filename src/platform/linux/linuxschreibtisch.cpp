#include "platform/linux/linuxschreibtisch.h"

#include "foundation/gewoehnlichedatei.h"
#include "foundation/konstanten.h"
#include "platform/linux/autostarteintrag.h"
#include "platform/linux/xanzeige.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QFileInfo>
#include <QStandardPaths>

#include <optional>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int frist = 2000;                  // milliseconds for an answer
constexpr qint64 groessterEintrag = 1 << 16; // bytes; far more than any entry has

const QString mitteilungsname = u"org.freedesktop.Notifications"_s;
const QString leistenname = u"org.kde.StatusNotifierWatcher"_s;

struct Ruf
{
    QString dienst;
    QString pfad;
    QString schnittstelle;
    QString methode;
    QVariantList werte{};
};

// The values of the answer; absent without one. No service is started for it.
std::optional<QVariantList> fragen(const QDBusConnection &bus, const Ruf &ruf)
{
    if (!bus.isConnected()) {
        return {};
    }
    QDBusMessage frage =
        QDBusMessage::createMethodCall(ruf.dienst, ruf.pfad, ruf.schnittstelle, ruf.methode);
    frage.setArguments(ruf.werte);
    frage.setAutoStartService(false);
    const QDBusMessage antwort = bus.call(frage, QDBus::Block, frist);
    if (antwort.type() != QDBusMessage::ReplyMessage) {
        return {};
    }
    return antwort.arguments();
}

std::optional<QVariantList> denBusFragen(const QDBusConnection &bus, const QString &methode,
                                         const QVariantList &werte = {})
{
    const QString wer = u"org.freedesktop.DBus"_s;
    return fragen(bus, {wer, u"/org/freedesktop/DBus"_s, wer, methode, werte});
}

bool ausfuehrbar(const QString &programm)
{
    if (programm.contains(u'/')) {
        const QFileInfo datei(programm);
        return datei.isFile() && datei.isExecutable();
    }
    return !QStandardPaths::findExecutable(programm).isEmpty();
}

} // namespace

LinuxSchreibtisch::LinuxSchreibtisch(QDBusConnection sitzung, QString ordner)
    : bus_(std::move(sitzung))
    , ordner_(std::move(ordner))
{
}

bool LinuxSchreibtisch::sitzungsbus() const
{
    return denBusFragen(bus_, u"GetId"_s).has_value();
}

Schreibtischauskunft::Mitteilungsdienst LinuxSchreibtisch::mitteilungsdienst() const
{
    using Zustand = Mitteilungsdienst::Zustand;
    const auto da = denBusFragen(bus_, u"NameHasOwner"_s, {mitteilungsname});
    if (!da || !da->value(0).toBool()) {
        const auto startbar = denBusFragen(bus_, u"ListActivatableNames"_s);
        const bool einer = startbar && startbar->value(0).toStringList().contains(mitteilungsname);
        return {.zustand = einer ? Zustand::BeiBedarf : Zustand::Keiner};
    }
    const auto auskunft = fragen(bus_, {mitteilungsname, u"/org/freedesktop/Notifications"_s,
                                        mitteilungsname, u"GetServerInformation"_s});
    if (!auskunft) {
        return {.zustand = Zustand::Stumm};
    }
    // Name, vendor, version, version of the standard that it keeps to.
    const QString name = auskunft->value(0).toString() + u' ' + auskunft->value(2).toString();
    return {.zustand = Zustand::Laeuft, .name = name.trimmed()};
}

Schreibtischauskunft::Leiste LinuxSchreibtisch::leiste() const
{
    const auto host = fragen(bus_, {leistenname,
                                    u"/StatusNotifierWatcher"_s,
                                    u"org.freedesktop.DBus.Properties"_s,
                                    u"Get"_s,
                                    {leistenname, u"IsStatusNotifierHostRegistered"_s}});
    if (host && host->value(0).value<QDBusVariant>().variant().toBool()) {
        return Leiste::StatusNotifier;
    }
    // A Wayland session may start its X server when it is asked, and has no such tray.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        xAnzeigeFragen(qgetenv("DISPLAY"), std::chrono::milliseconds(frist)).tray) {
        return Leiste::XEmbed;
    }
    return Leiste::Keine;
}

Schreibtischauskunft::Anmeldeeintrag LinuxSchreibtisch::anmeldeeintrag() const
{
    Anmeldeeintrag lage{.datei = autostartdatei(ordner_)};
    lage.da = QFileInfo::exists(lage.datei);
    const auto inhalt = gewoehnlichLesen(lage.datei, groessterEintrag);
    if (!inhalt) {
        return lage;
    }
    const Autostarteintrag eintrag = autostarteintragLesen(*inhalt);
    lage.abgeschaltet = eintrag.abgeschaltet;
    lage.programm = eintrag.programm();
    lage.ausfuehrbar = !lage.programm.isEmpty() && ausfuehrbar(lage.programm);
    if (!eintrag.voraussetzung.isEmpty() && !ausfuehrbar(eintrag.voraussetzung)) {
        lage.programm = eintrag.voraussetzung;
        lage.ausfuehrbar = false;
    }
    return lage;
}

} // namespace kalvaro
