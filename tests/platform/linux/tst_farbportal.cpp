#include "doubles/testbus.h"
#include "doubles/testportal.h"
#include "platform/linux/farbportal.h"
#include "platform/linux/linuxfarbschema.h"
#include "testlauf.h"

#include <QElapsedTimer>

#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// With a portal that is a process of its own, as the first question is waited for.
class TestFarbportal final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { bus.reset(); }

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
    std::unique_ptr<Testbus> bus;
    int gewechselt = 0;
    const std::function<void()> zaehlen = [this] { ++gewechselt; };
};

void TestFarbportal::initTestCase()
{
    KALVARO_BRAUCHT(u"dbus-daemon"_s);
    if (!Testportal::vorhanden()) {
        QSKIP("needs python3-dbusmock");
    }
}

void TestFarbportal::init()
{
    gewechselt = 0;
    bus = std::make_unique<Testbus>();
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
    const Testportal portal(*bus, wert);
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
    Testportal portal(*bus, u"dbus.UInt32(1)"_s);
    portal.anhalten();
    QElapsedTimer seit;
    seit.start();
    Farbfrage fragend(bus->adresse());
    const auto antwort = fragend.antwort();
    const qint64 gewartet = seit.elapsed();
    QVERIFY(!antwort);
    QVERIFY2(gewartet < 1000, qPrintable(QString::number(gewartet)));

    const Farbportal spaeter(bus->verbindung(), antwort, zaehlen);
    QCOMPARE(spaeter.helligkeit(), Helligkeit::Offen);
    portal.fortsetzen();
    QTRY_COMPARE(spaeter.helligkeit(), Helligkeit::Dunkel);
    QCOMPARE(gewechselt, 1);
}

void TestFarbportal::nurDieNeueFrage()
{
    Testportal portal(*bus, u"dbus.UInt32(1)"_s, u"ReadOne"_s);
    Farbfrage fragend(bus->adresse());
    const auto antwort = fragend.antwort();
    QVERIFY(!antwort);
    const Farbportal spaeter(bus->verbindung(), antwort, zaehlen);
    QTRY_COMPARE(spaeter.helligkeit(), Helligkeit::Dunkel);
}

void TestFarbportal::wechselImLaufenden()
{
    Testportal portal(*bus, u"dbus.UInt32(0)"_s);
    const Farbportal laufend(bus->verbindung(), Helligkeit::Offen, zaehlen);
    portal.schemaMelden(1);
    QTRY_COMPARE(laufend.helligkeit(), Helligkeit::Dunkel);
    portal.schemaMelden(1);
    portal.schemaMelden(2);
    QTRY_COMPARE(laufend.helligkeit(), Helligkeit::Hell);
    QCOMPARE(gewechselt, 2);
}

void TestFarbportal::fremdeEinstellungenZaehlenNicht()
{
    Testportal portal(*bus, u"dbus.UInt32(0)"_s);
    const Farbportal laufend(bus->verbindung(), Helligkeit::Offen, zaehlen);
    portal.melden(u"org.freedesktop.appearance"_s, u"contrast"_s, 1U);
    portal.melden(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, 1U);
    portal.schemaMelden(2); // comes after them
    QTRY_COMPARE(laufend.helligkeit(), Helligkeit::Hell);
    QCOMPARE(gewechselt, 1);
}

void TestFarbportal::derBusGeht()
{
    Testportal portal(*bus, u"dbus.UInt32(1)"_s);
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
    Testportal portal(*bus, u"dbus.UInt32(0)"_s);
    LinuxFarbschema schema(bus->verbindung(), Helligkeit::Offen);
    schema.beiWechsel(zaehlen);
    QCOMPARE(schema.wunsch(), Farbwunsch{});
    portal.schemaMelden(1);
    QTRY_COMPARE(gewechselt, 1);
    QCOMPARE(schema.wunsch(), (Farbwunsch{.ausdruecklich = Helligkeit::Dunkel}));
}

KALVARO_FENSTERTEST(TestFarbportal)
#include "tst_farbportal.moc"
