#include "doubles/datenordner.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "doubles/testuhr.h"
#include "platform/linux/logindwache.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>

#include <memory>
#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestLogindwache final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void hoertDasAufwachen();
    void logindKommtSpaeter();
    void logindStartetNeu();
    void fremdeSignaleZaehlenNicht();
    void derBusKommtSpaeter();
    void derOrdnerDesBussesKommtSpaeter();
    void derBusAntwortetErstSpaeter();
    void derBusStartetNeu();

private:
    void logindStarten();
    void logindBeenden();
    void schlaf(bool beginnt);

    Testuhr uhr;
    std::unique_ptr<Testbus> bus;
    QProcess logind;
    std::optional<QDBusConnection> frage; // of the bus as it runs now
    int aufgewacht = 0;
    const std::function<void()> zaehlen = [this] { ++aufgewacht; };
};

void TestLogindwache::initTestCase()
{
    KALVARO_BRAUCHT(u"dbus-daemon"_s);
    if (QProcess::execute(u"/usr/bin/python3"_s, {u"-c"_s, u"import dbusmock"_s}) != 0) {
        QSKIP("needs python3-dbusmock");
    }
}

void TestLogindwache::init()
{
    aufgewacht = 0;
    bus = std::make_unique<Testbus>();
}

void TestLogindwache::cleanup()
{
    logindBeenden();
    frage.reset();
    bus.reset();
}

void TestLogindwache::logindStarten()
{
    auto umgebung = QProcessEnvironment::systemEnvironment();
    umgebung.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, bus->adresse());
    logind.setProcessEnvironment(umgebung);
    anTestBinden(logind);
    logind.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    logind.setStandardOutputFile(QProcess::nullDevice());
    logind.start(u"/usr/bin/python3"_s,
                 {u"-m"_s, u"dbusmock"_s, u"--system"_s, u"--template"_s, u"logind"_s});
    frage.emplace(bus->verbindung());
    QTRY_VERIFY(frage->interface()->isServiceRegistered(u"org.freedesktop.login1"_s));
}

void TestLogindwache::logindBeenden()
{
    if (logind.state() != QProcess::NotRunning) {
        logind.kill();
        logind.waitForFinished();
    }
}

void TestLogindwache::schlaf(bool beginnt)
{
    QDBusMessage ruf =
        QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                       u"org.freedesktop.DBus.Mock"_s, u"EmitSignal"_s);
    ruf.setArguments({u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, u"b"_s,
                      QVariantList{QVariant(beginnt)}});
    QCOMPARE(frage->call(ruf).errorMessage(), QString());
}

void TestLogindwache::hoertDasAufwachen()
{
    logindStarten();
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    schlaf(true);
    schlaf(false);
    QTRY_COMPARE(aufgewacht, 1);
    schlaf(true);
    schlaf(false);
    QTRY_COMPARE(aufgewacht, 2);
}

void TestLogindwache::logindKommtSpaeter()
{
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    logindStarten();
    schlaf(false);
    QTRY_COMPARE(aufgewacht, 1);
}

void TestLogindwache::logindStartetNeu()
{
    logindStarten();
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    schlaf(false);
    QTRY_COMPARE(aufgewacht, 1);
    logindBeenden();
    logindStarten();
    schlaf(false);
    QTRY_COMPARE(aufgewacht, 2);
}

void TestLogindwache::fremdeSignaleZaehlenNicht()
{
    logindStarten();
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    QDBusMessage signal = QDBusMessage::createSignal(
        u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
    signal.setArguments({false});
    const QDBusConnection fremder = bus->verbindung();
    fremder.send(signal);
    schlaf(false); // comes after it
    QTRY_VERIFY(aufgewacht > 0);
    QCOMPARE(aufgewacht, 1);
}

void TestLogindwache::derBusKommtSpaeter()
{
    bus->beenden();
    QFile::remove(bus->ordner() + u"/bus"_s);
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    bus->starten();
    logindStarten();
    QTRY_VERIFY((uhr.vor(Sekunden(5)), schlaf(false), aufgewacht > 0));
}

void TestLogindwache::derOrdnerDesBussesKommtSpaeter()
{
    const QString ort = bus->ordner() + u"/run/dbus"_s;
    const Logindwache wache(uhr, zaehlen, u"unix:path="_s + ort + u"/system_bus_socket"_s);
    QVERIFY(QDir().mkpath(ort));
    logindStarten();
    QVERIFY(QFile::link(bus->ordner() + u"/bus"_s, ort + u"/system_bus_socket"_s));
    QTRY_VERIFY((schlaf(false), aufgewacht > 0));
}

void TestLogindwache::derBusAntwortetErstSpaeter()
{
    logindStarten();
    bus->anhalten();
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    bus->fortsetzen();
    schlaf(false);
    QCOMPARE(aufgewacht, 0);
    uhr.vor(Sekunden(5));
    schlaf(false);
    QTRY_COMPARE(aufgewacht, 1);
    QCOMPARE(uhr.offen(), 0);
}

void TestLogindwache::derBusStartetNeu()
{
    logindStarten();
    const Logindwache wache(uhr, zaehlen, bus->adresse());
    bus->beenden();
    logindBeenden();
    bus->starten();
    logindStarten();
    QTRY_VERIFY((uhr.vor(Sekunden(5)), schlaf(false), aufgewacht > 0));
}

KALVARO_TEST(TestLogindwache)
#include "tst_logindwache.moc"
