#include "doubles/datenordner.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "platform/linux/dbusverbindung.h"
#include "testlauf.h"

#include <QDBusError>
#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <memory>
#include <sys/stat.h>
#include <vector>

using namespace kalvaro;
using namespace Qt::StringLiterals;

class TestEinzelinstanz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void derZweiteLaesstDenErstenOeffnen_data() { wege(); }
    void derZweiteLaesstDenErstenOeffnen();
    void derZweiteSagtWasErWill_data() { wege(); }
    void derZweiteSagtWasErWill();
    void leiseEndetOhneZuOeffnen_data() { wege(); }
    void leiseEndetOhneZuOeffnen();
    void nachAbsturzIstDerNaechsteDerErste_data() { wege(); }
    void nachAbsturzIstDerNaechsteDerErste();
    void vieleZugleichErgebenEinen_data() { wege(); }
    void vieleZugleichErgebenEinen();
    void eineFrueheBitteGehtNichtVerloren_data() { wege(); }
    void eineFrueheBitteGehtNichtVerloren();
    void einErsterDerHaengtHaeltDenZweitenNichtAuf_data() { wege(); }
    void einErsterDerHaengtHaeltDenZweitenNichtAuf();

    void derDesktopOeffnet_data();
    void derDesktopOeffnet();
    void gapplicationOeffnet();
    void einTokenOhneMassGiltNicht();
    void ohneLaufzeitordnerLiegtDieSperreBeiDenDaten();
    void einLangerPfadGenuegt();
    void ohneBeschreibbarenOrdnerLaeuftEsTrotzdem();
    void einHaengenderBusHaeltNichtAuf();
    void einBusWirdNieGestartet_data();
    void einBusWirdNieGestartet();
    void derBusDesBenutzersGilt();

private:
    static void wege();
    [[nodiscard]] std::unique_ptr<Kindprogramm> start(const QStringList &argumente = {},
                                                      const QByteArray &marke = {},
                                                      const QByteArray &kennung = {}) const;
    [[nodiscard]] int rufen(const QString &programm, const QStringList &argumente) const;
    void ohneBus();

    Datenordner daten;
    std::unique_ptr<Testbus> bus;
    std::unique_ptr<QTemporaryDir> laufzeit;
    QProcessEnvironment umgebung;
};

void TestEinzelinstanz::initTestCase()
{
    KALVARO_BRAUCHT(u"dbus-daemon"_s);
}

void TestEinzelinstanz::init()
{
    daten.leeren();
    bus = std::make_unique<Testbus>();
    laufzeit = std::make_unique<QTemporaryDir>();
    umgebung = QProcessEnvironment::systemEnvironment();
    umgebung.insert(u"XDG_RUNTIME_DIR"_s, laufzeit->path());
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus->adresse());
    if (QLatin1String(QTest::currentDataTag()) == "without a bus"_L1) {
        ohneBus();
    }
}

void TestEinzelinstanz::wege()
{
    QTest::addColumn<bool>("leer");
    QTest::newRow("over the bus") << true;
    QTest::newRow("without a bus") << true;
}

void TestEinzelinstanz::ohneBus()
{
    umgebung.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
}

std::unique_ptr<Kindprogramm> TestEinzelinstanz::start(const QStringList &argumente,
                                                       const QByteArray &marke,
                                                       const QByteArray &kennung) const
{
    QProcessEnvironment mit = umgebung;
    mit.insert(u"XDG_ACTIVATION_TOKEN"_s, QString::fromUtf8(marke));
    mit.insert(u"DESKTOP_STARTUP_ID"_s, QString::fromUtf8(kennung));
    return std::make_unique<Kindprogramm>(QStringLiteral(EINZELINSTANZPROGRAMM), argumente, mit);
}

int TestEinzelinstanz::rufen(const QString &programm, const QStringList &argumente) const
{
    QProcess werkzeug;
    werkzeug.setProcessEnvironment(umgebung);
    werkzeug.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    werkzeug.start(programm, argumente);
    werkzeug.waitForFinished();
    return werkzeug.exitCode();
}

void TestEinzelinstanz::derZweiteLaesstDenErstenOeffnen()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "marke-1", "kennung_TIME7");
    QTRY_VERIFY(!zweiter->laeuft());
    QCOMPARE(zweiter->zeilen(), QStringList(u"zweite"_s));
    QCOMPARE(zweiter->ende(), 0);
    QTRY_COMPARE(erster->zeilen(), QStringList({u"erste"_s, u"oeffnen marke-1 kennung_TIME7"_s}));
    const auto dritter = start();
    QTRY_VERIFY(!dritter->laeuft());
    QTRY_COMPARE(erster->zeilen().value(2), u"oeffnen  "_s); // the earlier token is gone again
}

void TestEinzelinstanz::derZweiteSagtWasErWill()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({u"--abgleichen"_s}, "marke");
    QTRY_VERIFY(!zweiter->laeuft());
    QCOMPARE(zweiter->zeilen(), QStringList(u"zweite"_s));
    QTRY_COMPARE(erster->zeilen().value(1), u"abgleichen marke "_s);
    const auto dritter = start({u"--beenden"_s});
    QTRY_VERIFY(!dritter->laeuft());
    QTRY_COMPARE(erster->zeilen().value(2), u"beenden  "_s);
    const auto vierter = start({u"--hintergrund"_s});
    QTRY_VERIFY(!vierter->laeuft());
    QTRY_COMPARE(erster->zeilen().value(3), u"hintergrund  "_s);
}

void TestEinzelinstanz::leiseEndetOhneZuOeffnen()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen().size(), 1);
    const auto leiser = start({u"--leise"_s}, "leise");
    QTRY_VERIFY(!leiser->laeuft());
    QCOMPARE(leiser->zeilen(), QStringList(u"zweite"_s));
    QCOMPARE(leiser->ende(), 0);
    const auto lauter = start({}, "laut");
    QTRY_COMPARE(erster->zeilen(), QStringList({u"erste"_s, u"oeffnen laut "_s}));
}

void TestEinzelinstanz::nachAbsturzIstDerNaechsteDerErste()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    erster->signal(SIGKILL);
    QTRY_VERIFY(!erster->laeuft());
    const auto naechster = start();
    QTRY_COMPARE(naechster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "x");
    QTRY_COMPARE(naechster->zeilen().value(1), u"oeffnen x "_s);
}

void TestEinzelinstanz::vieleZugleichErgebenEinen()
{
    std::vector<std::unique_ptr<Kindprogramm>> starts;
    for (int i = 0; i < 8; ++i) {
        starts.push_back(start({u"--leise"_s}));
    }
    QStringList worte;
    for (const auto &einer : starts) {
        QTRY_VERIFY(!einer->zeilen().isEmpty());
        worte += einer->zeilen().first();
    }
    QCOMPARE(worte.count(u"erste"_s), 1);
    QCOMPARE(worte.count(u"zweite"_s), 7);
}

void TestEinzelinstanz::eineFrueheBitteGehtNichtVerloren()
{
    const auto erster = start({u"--spaet"_s});
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "frueh");
    QTRY_VERIFY(!zweiter->laeuft());
    const auto dritter = start({u"--abgleichen"_s});
    QTRY_VERIFY(!dritter->laeuft());
    erster->schreiben(u"los"_s);
    QTRY_COMPARE(erster->zeilen(),
                 QStringList({u"erste"_s, u"oeffnen frueh "_s, u"abgleichen  "_s}));
}

void TestEinzelinstanz::einErsterDerHaengtHaeltDenZweitenNichtAuf()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    erster->signal(SIGSTOP);
    QElapsedTimer dauer;
    dauer.start();
    const auto zweiter = start({}, "spaet");
    QTRY_VERIFY(!zweiter->laeuft());
    QVERIFY(dauer.elapsed() < 4000);
    QCOMPARE(zweiter->zeilen(), QStringList(u"zweite"_s));
    erster->signal(SIGCONT);
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen spaet "_s);
}

void TestEinzelinstanz::derDesktopOeffnet_data()
{
    QTest::addColumn<QStringList>("ruf");
    QTest::addColumn<QString>("wunsch");
    const QString daten1 = u"{'activation-token': <'t'>, 'desktop-startup-id': <'s'>}"_s;
    QTest::newRow("Activate") << QStringList({u"Activate"_s, daten1}) << u"oeffnen"_s;
    QTest::newRow("Open") << QStringList({u"Open"_s, u"['file:///x']"_s, daten1}) << u"oeffnen"_s;
    const auto aktion = [&](const char *zeile, const QString &name, const QString &wunsch) {
        QTest::newRow(zeile) << QStringList({u"ActivateAction"_s, name, u"[<'wert'>]"_s, daten1})
                             << wunsch;
    };
    aktion("an unknown action", u"etwas"_s, u"oeffnen"_s);
    aktion("sync now", u"abgleichen"_s, u"abgleichen"_s);
    aktion("quit", u"beenden"_s, u"beenden"_s);
}

void TestEinzelinstanz::derDesktopOeffnet()
{
    KALVARO_BRAUCHT(u"gdbus"_s);
    QFETCH(QStringList, ruf);
    QFETCH(QString, wunsch);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    ruf[0].prepend(u"org.freedesktop.Application."_s);
    const QStringList ziel = {
        u"call"_s,          u"--session"_s,           u"--dest"_s,  u"de.kalvaro.kalvaro"_s,
        u"--object-path"_s, u"/de/kalvaro/kalvaro"_s, u"--method"_s};
    QCOMPARE(rufen(u"gdbus"_s, ziel + ruf), 0);
    QTRY_COMPARE(erster->zeilen().value(1), wunsch + u" t s"_s);
}

void TestEinzelinstanz::gapplicationOeffnet()
{
    KALVARO_BRAUCHT(u"gapplication"_s);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    QCOMPARE(rufen(u"gapplication"_s, {u"launch"_s, u"de.kalvaro.kalvaro"_s}), 0);
    QTRY_COMPARE(erster->zeilen().size(), 2);
}

void TestEinzelinstanz::einTokenOhneMassGiltNicht()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, QByteArray(5000, 'x'));
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen  "_s);
}

void TestEinzelinstanz::ohneLaufzeitordnerLiegtDieSperreBeiDenDaten()
{
    ohneBus();
    umgebung.remove(u"XDG_RUNTIME_DIR"_s);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    QVERIFY(QDir(qEnvironmentVariable("XDG_DATA_HOME") + u"/kalvaro"_s)
                .exists(u"de.kalvaro.kalvaro.lock"_s));
    const auto zweiter = start({}, "m");
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen m "_s);
}

void TestEinzelinstanz::einLangerPfadGenuegt()
{
    ohneBus();
    const QString lang = laufzeit->filePath(QString(200, u'x'));
    QVERIFY(QDir().mkpath(lang));
    umgebung.insert(u"XDG_RUNTIME_DIR"_s, lang);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "m");
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen m "_s);
    struct stat art = {};
    QCOMPARE(::stat(QFile::encodeName(lang + u"/de.kalvaro.kalvaro.socket"_s).constData(), &art),
             0);
    QCOMPARE(art.st_mode & 0777U, 0700U);
}

void TestEinzelinstanz::ohneBeschreibbarenOrdnerLaeuftEsTrotzdem()
{
    ohneBus();
    umgebung.remove(u"XDG_RUNTIME_DIR"_s);
    umgebung.insert(u"XDG_DATA_HOME"_s, u"/proc/hier/nicht"_s);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
}

void TestEinzelinstanz::einHaengenderBusHaeltNichtAuf()
{
    bus->anhalten();
    QElapsedTimer dauer;
    dauer.start();
    QVERIFY(!busAntwortet(bus->adresse(), std::chrono::milliseconds(50)));
    QVERIFY(dauer.elapsed() < 2000);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    QVERIFY(QFile::exists(laufzeit->filePath(u"de.kalvaro.kalvaro.lock"_s)));
    bus->fortsetzen();
    QVERIFY(busAntwortet(bus->adresse()));
}

void TestEinzelinstanz::einBusWirdNieGestartet_data()
{
    QTest::addColumn<QByteArray>("vorher");
    QTest::newRow("nothing set") << QByteArray();
    QTest::newRow("to be started") << QByteArray("autolaunch:");
    QTest::newRow("gone") << QByteArray("unix:path=/gibt/es/nicht");
    QTest::newRow("no address") << QByteArray("unsinn");
}

// With a display and no bus, libdbus has dbus-launch start one, or complains that it could not.
void TestEinzelinstanz::einBusWirdNieGestartet()
{
    QFETCH(QByteArray, vorher);
    qputenv("DISPLAY", ":4711");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(laufzeit->path()));
    qputenv("DBUS_SESSION_BUS_ADDRESS", vorher);
    sitzungsbusFestlegen();
    QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), "disabled:");
    const QDBusConnection sitzung =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"nie"_s);
    QVERIFY(!sitzung.isConnected());
    QVERIFY2(!sitzung.lastError().message().contains(u"launch"),
             qPrintable(sitzung.lastError().message()));
    QDBusConnection::disconnectFromBus(u"nie"_s);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void TestEinzelinstanz::derBusDesBenutzersGilt()
{
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(laufzeit->path()));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    QCOMPARE(sitzungsbusAdresse(), QString());
    const QString socket = bus->ordner() + u"/bus"_s;
    QVERIFY(QFile::link(socket, laufzeit->filePath(u"bus"_s)));
    QCOMPARE(sitzungsbusAdresse(), u"unix:path="_s + laufzeit->filePath(u"bus"_s));
    QVERIFY(busAntwortet(sitzungsbusAdresse()));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(laufzeit->path() + u"//"_s));
    QCOMPARE(sitzungsbusAdresse(), u"unix:path="_s + laufzeit->filePath(u"bus"_s));
    QVERIFY(busAntwortet(u"unix:runtime=yes"_s));
    const QString vorher = QDir::currentPath();
    QVERIFY(QDir::setCurrent(laufzeit->path()));
    qputenv("XDG_RUNTIME_DIR", ".");
    const QString relativ = sitzungsbusAdresse();
    const bool antwortet = busAntwortet(u"unix:runtime=yes"_s);
    QVERIFY(QDir::setCurrent(vorher));
    QCOMPARE(relativ, QString());
    QVERIFY(!antwortet);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:;" + bus->adresse().toUtf8());
    QCOMPARE(sitzungsbusAdresse(), bus->adresse());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

KALVARO_TEST(TestEinzelinstanz)
#include "tst_einzelinstanz.moc"
