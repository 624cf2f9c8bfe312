#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "platform/linux/farbportal.h"
#include "platform/linux/linuxfarbschema.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QElapsedTimer>

#include <csignal>
#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString name = u"org.freedesktop.portal.Desktop"_s;
const QString pfad = u"/org/freedesktop/portal/desktop"_s;
const QString schnittstelle = u"org.freedesktop.portal.Settings"_s;

} // namespace

// With a portal that is a process of its own, as the first question is waited for.
class TestFarbportal final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void antwortVorDemErstenBild_data();
    void antwortVorDemErstenBild();
    void ohnePortalWartetNiemand();
    void ohneBus();
    void haengendesPortalAntwortetSpaeter();
    void nurDieNeueFrage();
    void wechselImLaufenden();
    void fremdeEinstellungenZaehlenNicht();
    void derBusGeht();
    void schemaFolgtDemPortal();

private:
    void portalStarten(const QString &wert, const QString &methode = u"Read"_s);
    void portalBeenden();
    void rufen(const QString &was, const QVariantList &womit);
    void melden(const QString &bereich, const QString &schluessel, uint wert);

    std::unique_ptr<Testbus> bus;
    QProcess portal;
    std::optional<QDBusConnection> frage;
    int gewechselt = 0;
    const std::function<void()> zaehlen = [this] { ++gewechselt; };
};

void TestFarbportal::initTestCase()
{
    KALVARO_BRAUCHT(u"dbus-daemon"_s);
    if (QProcess::execute(u"/usr/bin/python3"_s, {u"-c"_s, u"import dbusmock"_s}) != 0) {
        QSKIP("needs python3-dbusmock");
    }
}

void TestFarbportal::init()
{
    gewechselt = 0;
    bus = std::make_unique<Testbus>();
    frage.emplace(bus->verbindung());
}

void TestFarbportal::cleanup()
{
    portalBeenden();
    frage.reset();
    bus.reset();
}

void TestFarbportal::rufen(const QString &was, const QVariantList &womit)
{
    QDBusMessage ruf =
        QDBusMessage::createMethodCall(name, pfad, u"org.freedesktop.DBus.Mock"_s, was);
    ruf.setArguments(womit);
    QCOMPARE(frage->call(ruf).errorMessage(), QString());
}

// `wert` is what the method's body returns, in Python.
void TestFarbportal::portalStarten(const QString &wert, const QString &methode)
{
    auto umgebung = QProcessEnvironment::systemEnvironment();
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus->adresse());
    portal.setProcessEnvironment(umgebung);
    anTestBinden(portal);
    portal.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    portal.setStandardOutputFile(QProcess::nullDevice());
    portal.start(u"/usr/bin/python3"_s,
                 {u"-m"_s, u"dbusmock"_s, u"--session"_s, name, pfad, schnittstelle});
    QTRY_VERIFY(frage->interface()->isServiceRegistered(name));
    rufen(u"AddMethod"_s, {schnittstelle, methode, u"ss"_s, u"v"_s, QString(u"ret = "_s + wert)});
}

void TestFarbportal::portalBeenden()
{
    if (portal.state() != QProcess::NotRunning) {
        portal.kill();
        portal.waitForFinished();
    }
}

void TestFarbportal::melden(const QString &bereich, const QString &schluessel, uint wert)
{
    const QVariantList inhalt{bereich, schluessel, QVariant(wert)};
    rufen(u"EmitSignal"_s, {schnittstelle, u"SettingChanged"_s, u"ssv"_s, inhalt});
}

void TestFarbportal::antwortVorDemErstenBild_data()
{
    QTest::addColumn<QString>("wert");
    QTest::addColumn<Helligkeit>("erwartet");
    QTest::newRow("dark") << u"dbus.UInt32(1)"_s << Helligkeit::Dunkel;
    QTest::newRow("light") << u"dbus.UInt32(2)"_s << Helligkeit::Hell;
    QTest::newRow("no preference") << u"dbus.UInt32(0)"_s << Helligkeit::Offen;
    QTest::newRow("a value that nobody knows") << u"dbus.UInt32(7)"_s << Helligkeit::Offen;
    QTest::newRow("a value of another kind") << u"'dark'"_s << Helligkeit::Offen;
    QTest::newRow("a variant in a variant")
        << u"dbus.UInt32(1, variant_level=1)"_s << Helligkeit::Dunkel;
    QTest::newRow("three of them") << u"dbus.UInt32(1, variant_level=2)"_s << Helligkeit::Dunkel;
}

void TestFarbportal::antwortVorDemErstenBild()
{
    QFETCH(QString, wert);
    portalStarten(wert);
    Farbfrage fragend(bus->adresse());
    QTEST(fragend.antwort().value(), "erwartet");
}

void TestFarbportal::ohnePortalWartetNiemand()
{
    Farbfrage fragend(bus->adresse());
    QCOMPARE(fragend.antwort(), std::optional(Helligkeit::Offen));
}

void TestFarbportal::ohneBus()
{
    for (const QString &adresse : {QString(), u"disabled:"_s, u"unix:path=/gibtesnicht"_s}) {
        Farbfrage fragend(adresse);
        QCOMPARE(fragend.antwort(), std::optional(Helligkeit::Offen));
    }
    const Farbportal nichts(QDBusConnection(u"nie verbunden"_s), std::nullopt, zaehlen);
    QCOMPARE(nichts.helligkeit(), Helligkeit::Offen);
}

void TestFarbportal::haengendesPortalAntwortetSpaeter()
{
    portalStarten(u"dbus.UInt32(1)"_s);
    ::kill(static_cast<pid_t>(portal.processId()), SIGSTOP);
    QElapsedTimer seit;
    seit.start();
    Farbfrage fragend(bus->adresse());
    const auto antwort = fragend.antwort();
    const qint64 gewartet = seit.elapsed();
    QVERIFY(!antwort);
    QVERIFY2(gewartet < 1000, qPrintable(QString::number(gewartet)));

    const Farbportal spaeter(bus->verbindung(), antwort, zaehlen);
    QCOMPARE(spaeter.helligkeit(), Helligkeit::Offen);
    ::kill(static_cast<pid_t>(portal.processId()), SIGCONT);
    QTRY_COMPARE(spaeter.helligkeit(), Helligkeit::Dunkel);
    QCOMPARE(gewechselt, 1);
}

void TestFarbportal::nurDieNeueFrage()
{
    portalStarten(u"dbus.UInt32(1)"_s, u"ReadOne"_s);
    Farbfrage fragend(bus->adresse());
    const auto antwort = fragend.antwort();
    QVERIFY(!antwort);
    const Farbportal spaeter(bus->verbindung(), antwort, zaehlen);
    QTRY_COMPARE(spaeter.helligkeit(), Helligkeit::Dunkel);
}

void TestFarbportal::wechselImLaufenden()
{
    portalStarten(u"dbus.UInt32(0)"_s);
    const Farbportal laufend(bus->verbindung(), Helligkeit::Offen, zaehlen);
    melden(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 1);
    QTRY_COMPARE(laufend.helligkeit(), Helligkeit::Dunkel);
    melden(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 1);
    melden(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 2);
    QTRY_COMPARE(laufend.helligkeit(), Helligkeit::Hell);
    QCOMPARE(gewechselt, 2);
}

void TestFarbportal::fremdeEinstellungenZaehlenNicht()
{
    portalStarten(u"dbus.UInt32(0)"_s);
    const Farbportal laufend(bus->verbindung(), Helligkeit::Offen, zaehlen);
    melden(u"org.freedesktop.appearance"_s, u"contrast"_s, 1);
    melden(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, 1);
    melden(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 2); // comes after them
    QTRY_COMPARE(laufend.helligkeit(), Helligkeit::Hell);
    QCOMPARE(gewechselt, 1);
}

void TestFarbportal::derBusGeht()
{
    portalStarten(u"dbus.UInt32(1)"_s);
    Farbfrage fragend(bus->adresse());
    QCOMPARE(fragend.antwort(), std::optional(Helligkeit::Dunkel));
    const QDBusConnection leitung = bus->verbindung();
    const Farbportal laufend(leitung, Helligkeit::Dunkel, zaehlen);
    bus->beenden();
    QTRY_VERIFY(!leitung.isConnected());
    QCOMPARE(laufend.helligkeit(), Helligkeit::Dunkel);
    QCOMPARE(gewechselt, 0);
}

void TestFarbportal::schemaFolgtDemPortal()
{
    portalStarten(u"dbus.UInt32(0)"_s);
    LinuxFarbschema schema(bus->verbindung(), Helligkeit::Offen);
    schema.beiWechsel(zaehlen);
    QCOMPARE(schema.wunsch(), Farbwunsch{});
    melden(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 1);
    QTRY_COMPARE(gewechselt, 1);
    QCOMPARE(schema.wunsch(), (Farbwunsch{.ausdruecklich = Helligkeit::Dunkel}));
}

KALVARO_FENSTERTEST(TestFarbportal)
#include "tst_farbportal.moc"
