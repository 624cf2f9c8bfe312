// The adapters of Linux that meet the desktop on message buses, which are the tests' own.

#include "browser.h"
#include "doubles/buendel.h"
#include "doubles/dateien.h"
#include "doubles/mitteilungsserver.h"
#include "doubles/statushost.h"
#include "doubles/testbus.h"
#include "doubles/testportal.h"
#include "foundation/datenordner.h"
#include "platform/linux/dbusmitteilungen.h"
#include "platform/linux/einzelinstanzsperre.h"
#include "platform/linux/linuxarbeitsplatz.h"
#include "platform/linux/linuxfarbschema.h"
#include "platform/linux/traystatusobjekt.h"
#include "prueflinge.h"

#include <QDBusPendingCall>
#include <QTemporaryDir>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

const QString wer = u"linux"_s;
const QStringList bus{u"dbus-daemon"_s};

struct Sitzungspruefling final : Arbeitsplatzpruefling
{
    Sitzungspruefling()
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", systembus.adresse().toUtf8());
        logind.registerService(u"org.freedesktop.login1"_s);
    }
    ~Sitzungspruefling() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    Arbeitsplatz &arbeitsplatz() override { return sitzung; }
    QString gutes() override
    {
        const QString ort = ordner.filePath(u"gut.app"_s);
        buendelSchreiben(ort, plistBytes(Plistform::Xml, {{u"CFBundleExecutable"_s, u"x"_s}}));
        dateiSchreiben(ort + u"/Contents/MacOS/x"_s,
                       "#!/bin/sh\necho x >> '" + spur.toUtf8() + "'\n", true);
        return ort;
    }
    QString kaputtes() override { return ordner.filePath(u"fehlt.app"_s); }
    [[nodiscard]] int starts() const override
    {
        return static_cast<int>(dateiLesen(spur).count('\n'));
    }
    [[nodiscard]] QList<QUrl> geoeffnet() const override { return browser.adressen(); }
    void wecken() override
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(u"/org/freedesktop/login1"_s,
                                       u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
        signal.setArguments({false});
        logind.send(signal);
    }

    Testuhr uhr;
    QTemporaryDir ordner;
    const QString spur = ordner.filePath(u"spur"_s);
    Testbus systembus;
    QDBusConnection logind = systembus.verbindung();
    const Browser browser;
    LinuxArbeitsplatz sitzung{uhr};
};
const Vertrag<Arbeitsplatzpruefling> arbeitsplatz(wer, std::make_unique<Sitzungspruefling>, bus);

struct Startpruefling final : Einzelinstanzpruefling
{
    explicit Startpruefling(bool mitBus)
    {
        umgebung.insert(u"XDG_RUNTIME_DIR"_s, laufzeit.path());
        umgebung.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        if (mitBus) {
            sitzung.emplace();
            umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, sitzung->adresse());
        }
    }

    [[nodiscard]] std::unique_ptr<Kindprogramm> start(const QStringList &argumente) const override
    {
        return std::make_unique<Kindprogramm>(QStringLiteral(EINZELINSTANZPROGRAMM_LINUX),
                                              argumente, umgebung);
    }
    [[nodiscard]] std::unique_ptr<QObject> besetzt(std::function<void()> gefragt) const override
    {
        auto sperre = std::make_unique<Einzelinstanzsperre>(
            appOrdner(), [ruf = std::move(gefragt)](const QByteArray &) {
                ruf();
                return false;
            });
        [[maybe_unused]] const auto stand = sperre->nehmen();
        return sperre;
    }

    QTemporaryDir laufzeit;
    QProcessEnvironment umgebung = QProcessEnvironment::systemEnvironment();
    std::optional<Testbus> sitzung;
};
const Vertrag<Einzelinstanzpruefling> mitBus(
    u"linux, over the bus"_s, [] { return std::make_unique<Startpruefling>(true); }, bus);
const Vertrag<Einzelinstanzpruefling> ohneBus(u"linux, without a bus"_s, [] {
    return std::make_unique<Startpruefling>(false);
});

struct Portalpruefling final : Farbpruefling
{
    // Neither the machine's settings nor its display count.
    Portalpruefling()
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(ordner.path()));
        qunsetenv("GTK_THEME");
        qunsetenv("DISPLAY");
        schema_.emplace(sitzung.verbindung(), Helligkeit::Offen);
    }
    ~Portalpruefling() override { qunsetenv("XDG_CONFIG_HOME"); }

    Farbschema &schema() override { return *schema_; }
    void wechseln(Helligkeit helligkeit) override
    {
        portal.schemaMelden(helligkeit == Helligkeit::Dunkel ? 1U
                            : helligkeit == Helligkeit::Hell ? 2U
                                                             : 0U);
    }

    QTemporaryDir ordner;
    Testbus sitzung;
    Testportal portal{sitzung, u"dbus.UInt32(0)"_s};
    std::optional<LinuxFarbschema> schema_;
};
const Vertrag<Farbpruefling> farbschema(wer, std::make_unique<Portalpruefling>, bus);

struct Postpruefling final : Mitteilungspruefling
{
    Mitteilungen &mitteilungen() override { return post; }
    [[nodiscard]] QList<Mitteilung> gezeigt() const override
    {
        QList<Mitteilung> liste;
        for (const auto &eine : aufrufe()) {
            liste.append({eine.titel, eine.inhalt, {}});
        }
        return liste;
    }
    void klicken(qsizetype nummer) override
    {
        const auto klickbare =
            std::count_if(aufrufe().begin(), aufrufe().end(),
                          [](const auto &eine) { return !eine.aktionen.isEmpty(); });
        (void)QTest::qWaitFor([&] { return post.offene() == klickbare; });
        dienst->klicken(aufrufe().at(nummer).id, {});
    }
    bool verweigern() override
    {
        dienst.reset();
        return true;
    }

    [[nodiscard]] const QList<Mitteilungsserver::Aufruf> &aufrufe() const
    {
        return dienst->mitteilungen();
    }

    Testbus sitzung;
    std::optional<Mitteilungsserver> dienst{std::in_place, sitzung.verbindung(),
                                            QStringList{u"body"_s, u"actions"_s}};
    DBusMitteilungen post{sitzung.verbindung(), 2000};
};
const Vertrag<Mitteilungspruefling> mitteilungen(wer, std::make_unique<Postpruefling>, bus);

// The desktop and the item are in one process here, so nothing waits for an answer but by the event
// loop.
struct Traypruefling final : Statuspruefling
{
    Traypruefling()
    {
        qunsetenv("DISPLAY");
        (void)leiste(true);
        objekt_.emplace(uhr, sitzung.verbindung());
        (void)QTest::qWaitFor([this] { return objekt_->erreichbar(); });
    }

    Statusobjekt &objekt() override { return *objekt_; }
    bool sichtbar() override { return host && host->elemente().size() == 1; }
    QString hinweis() override
    {
        return qdbus_cast<Leistenhinweis>(eigenschaft(u"ToolTip"_s)).titel;
    }
    void menueOeffnen() override
    {
        const auto pfad = eigenschaft(u"Menu"_s).value<QDBusObjectPath>().path();
        [[maybe_unused]] const auto antwort =
            rufen(pfad, u"com.canonical.dbusmenu"_s, u"AboutToShow"_s, {0});
    }
    bool leiste(bool da) override
    {
        if (da) {
            host.emplace(sitzung.verbindung());
        } else {
            host.reset();
        }
        return true;
    }

    [[nodiscard]] QVariant eigenschaft(const QString &name)
    {
        const auto werte = rufen(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
                                 u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
        return werte.value(0).value<QDBusVariant>().variant();
    }
    [[nodiscard]] QVariantList rufen(const QString &pfad, const QString &schnittstelle,
                                     const QString &methode, const QVariantList &werte)
    {
        QDBusMessage ruf =
            QDBusMessage::createMethodCall(host->elemente().value(0), pfad, schnittstelle, methode);
        ruf.setArguments(werte);
        const QDBusPendingCall antwort = panel.asyncCall(ruf);
        (void)QTest::qWaitFor([&antwort] { return antwort.isFinished(); });
        return antwort.reply().arguments();
    }

    Testuhr uhr;
    Testbus sitzung;
    QDBusConnection panel = sitzung.verbindung();
    std::optional<Statushost> host;
    std::optional<TrayStatusobjekt> objekt_;
};
const Vertrag<Statuspruefling> statusobjekt(wer, std::make_unique<Traypruefling>, bus);

} // namespace

} // namespace kalvaro
