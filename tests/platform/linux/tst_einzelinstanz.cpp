#include "doubles/datenordner.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "foundation/datenordner.h"
#include "platform/linux/dbuseinzelinstanz.h"
#include "platform/linux/dbusverbindung.h"
#include "platform/linux/signale.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <cstring>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QStringList aktivieren{u"call"_s,
                             u"--session"_s,
                             u"--dest"_s,
                             u"de.kalvaro.kalvaro"_s,
                             u"--object-path"_s,
                             u"/de/kalvaro/kalvaro"_s,
                             u"--method"_s,
                             u"org.freedesktop.Application.Activate"_s,
                             u"{'activation-token': <'t'>, 'desktop-startup-id': <'s'>}"_s};

// A connection to the first one as another start makes it, step by step.
class Frage
{
public:
    Frage()
        : fd_(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0))
    {
        const QByteArray pfad = QFile::encodeName(datei(u"de.kalvaro.kalvaro.socket"_s));
        sockaddr_un ziel = {};
        ziel.sun_family = AF_UNIX;
        std::memcpy(ziel.sun_path, pfad.constData(), static_cast<size_t>(pfad.size()));
        if (::connect(fd_, reinterpret_cast<const sockaddr *>(&ziel), sizeof ziel) != 0) {
            qFatal("Nobody listens at %s", pfad.constData());
        }
    }
    ~Frage() { ::close(fd_); }
    Frage(const Frage &) = delete;
    Frage &operator=(const Frage &) = delete;

    void stellen(const QByteArray &nachricht) const
    {
        ::send(fd_, nachricht.constData(), static_cast<size_t>(nachricht.size()), MSG_NOSIGNAL);
    }

    // Waits for the answer; false when the connection ends without one.
    [[nodiscard]] bool zugesagt() const
    {
        char zusage = 0;
        return ::recv(fd_, &zusage, 1, 0) == 1;
    }

private:
    const int fd_;
};

} // namespace

class TestEinzelinstanz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void derZweiteLaesstDenErstenOeffnen_data() { wege(); }
    void derZweiteLaesstDenErstenOeffnen();
    void werEndetSagtNichtsZu_data();
    void werEndetSagtNichtsZu();
    void einSignalGiltBevorDieSchleifeEsSieht();
    void mitUndOhneBusIstEsEinProgramm_data();
    void mitUndOhneBusIstEsEinProgramm();
    void einFremderMitUnseremNamenStoertNicht_data();
    void einFremderMitUnseremNamenStoertNicht();
    void zweiDatenordnerSindZweiProgramme();
    void derNaechsteErbtDenNamen();
    void derBusErreichtEinenErstenDerIhnNichtKennt();
    void ohneSperreEntscheidetDerName();
    void eineHalbeVerbindungHaeltNichtAuf();

    void derDesktopOeffnet_data();
    void derDesktopOeffnet();
    void gapplicationOeffnet();
    void einTokenOhneMassGiltNicht();
    void dieSperreLiegtBeiDenDaten();
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

void TestEinzelinstanz::werEndetSagtNichtsZu_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("gebeten");
    QTest::addColumn<bool>("zusage");
    QTest::newRow("a signal waits that the event loop has not seen") << SIGTERM << false << false;
    QTest::newRow("it was asked to end just before") << SIGCONT << true << false;
    QTest::newRow("it goes on") << SIGCONT << false << true;
}

// It is asked while it is stopped, so that everything is there at once when it goes on.
void TestEinzelinstanz::werEndetSagtNichtsZu()
{
    QFETCH(const int, signal);
    QFETCH(const bool, gebeten);
    ohneBus();
    const auto erster = start({u"--gehorcht"_s});
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    erster->signal(SIGSTOP);
    const Frage ende;
    if (gebeten) {
        ende.stellen(R"({"aktion":"beenden"})");
    }
    const Frage frage;
    frage.stellen(R"({"aktion":"abgleichen"})");
    erster->signal(signal);
    erster->signal(SIGCONT);
    QVERIFY(!gebeten || ende.zugesagt());
    QTEST(frage.zugesagt(), "zusage");
}

void TestEinzelinstanz::einSignalGiltBevorDieSchleifeEsSieht()
{
    const QTemporaryDir ordner;
    DBusEinzelinstanz erster({}, QDBusConnection(u"keine"_s), ordner.path());
    QCOMPARE(erster.belegen(Wunsch::Oeffnen), Belegung::Erste);
    int signale = 0;
    const Signale hoerer([&signale] { ++signale; });
    QVERIFY(erster.bitten({Wunsch::Abgleichen, {}}));
    std::raise(SIGTERM);
    QCOMPARE(signale, 0);
    QVERIFY(!erster.bitten({Wunsch::Abgleichen, {}}));
    QTRY_COMPARE(signale, 1);
    QVERIFY(erster.bitten({Wunsch::Abgleichen, {}})); // it did not end after all
}

void TestEinzelinstanz::mitUndOhneBusIstEsEinProgramm_data()
{
    QTest::addColumn<QString>("was");
    for (const char *was : {"the second without a bus", "the first without a bus", "the bus killed",
                            "the bus hangs", "another bus", "another runtime folder"}) {
        QTest::newRow(was) << QString::fromLatin1(was);
    }
}

void TestEinzelinstanz::mitUndOhneBusIstEsEinProgramm()
{
    QFETCH(const QString, was);
    const QString adresse = bus->adresse();
    if (was == u"the first without a bus") {
        ohneBus();
    }
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    Testbus anderer;
    const QTemporaryDir anderswo;
    if (was == u"the second without a bus") {
        ohneBus();
    } else if (was == u"the first without a bus") {
        umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, adresse);
    } else if (was == u"the bus killed") {
        bus->beenden();
    } else if (was == u"the bus hangs") {
        bus->anhalten();
    } else if (was == u"another bus") {
        umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, anderer.adresse());
    } else {
        umgebung.insert(u"XDG_RUNTIME_DIR"_s, anderswo.path());
    }
    const auto zweiter = start({u"--beenden"_s});
    QTRY_VERIFY(!zweiter->laeuft());
    QCOMPARE(zweiter->zeilen(), QStringList(u"zweite"_s));
    QTRY_COMPARE(erster->zeilen().value(1), u"beenden  "_s);
}

void TestEinzelinstanz::einFremderMitUnseremNamenStoertNicht_data()
{
    QTest::addColumn<bool>("stumm");
    QTest::newRow("silent") << true;
    QTest::newRow("without our object") << false;
}

void TestEinzelinstanz::einFremderMitUnseremNamenStoertNicht()
{
    QFETCH(const bool, stumm);
    QDBusConnection fremder = bus->verbindung();
    const QTemporaryDir anderswo;
    std::unique_ptr<Kindprogramm> schweiger;
    if (stumm) {
        const QString ordner = umgebung.value(u"XDG_DATA_HOME"_s);
        umgebung.insert(u"XDG_DATA_HOME"_s, anderswo.path());
        schweiger = start();
        QTRY_COMPARE(schweiger->zeilen(), QStringList(u"erste"_s));
        schweiger->signal(SIGSTOP);
        umgebung.insert(u"XDG_DATA_HOME"_s, ordner);
    } else {
        QVERIFY(fremder.registerService(u"de.kalvaro.kalvaro"_s));
    }
    QElapsedTimer dauer;
    dauer.start();
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "x");
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen x "_s);
    QTRY_VERIFY(!zweiter->laeuft());
    QCOMPARE(zweiter->ende(), 0);
    QVERIFY(dauer.elapsed() < 3000);
}

// The name on the bus goes from one to the other.
void TestEinzelinstanz::zweiDatenordnerSindZweiProgramme()
{
    KALVARO_BRAUCHT(u"gdbus"_s);
    const auto einer = start();
    QTRY_COMPARE(einer->zeilen(), QStringList(u"erste"_s));
    const QTemporaryDir anderswo;
    umgebung.insert(u"XDG_DATA_HOME"_s, anderswo.path());
    const auto anderer = start();
    QTRY_COMPARE(anderer->zeilen(), QStringList(u"erste"_s));
    QCOMPARE(rufen(u"gdbus"_s, aktivieren), 0);
    QTRY_COMPARE(einer->zeilen().size(), 2);
    QCOMPARE(einer->ende(), 0);
    QCOMPARE(rufen(u"gdbus"_s, aktivieren), 0);
    QTRY_COMPARE(anderer->zeilen().size(), 2);
}

// Also where the bus has not heard yet that the one before is gone.
void TestEinzelinstanz::derNaechsteErbtDenNamen()
{
    KALVARO_BRAUCHT(u"gdbus"_s);
    QDBusConnection vorgaenger = bus->verbindung();
    QVERIFY(vorgaenger.registerService(u"de.kalvaro.kalvaro"_s));
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    QVERIFY(vorgaenger.unregisterService(u"de.kalvaro.kalvaro"_s));
    QCOMPARE(rufen(u"gdbus"_s, aktivieren), 0);
    QTRY_COMPARE(erster->zeilen().size(), 2);
}

// The bus starts another one for its message, which passes that on.
void TestEinzelinstanz::derBusErreichtEinenErstenDerIhnNichtKennt()
{
    KALVARO_BRAUCHT(u"gdbus"_s);
    const QString adresse = bus->adresse();
    ohneBus();
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, adresse);
    const auto bote = start({u"--leise"_s});
    const QDBusConnection zuschauer = bus->verbindung();
    QTRY_VERIFY(zuschauer.interface()->isServiceRegistered(u"de.kalvaro.kalvaro"_s).value());
    QCOMPARE(rufen(u"gdbus"_s, aktivieren), 0);
    QTRY_COMPARE(erster->zeilen(), QStringList({u"erste"_s, u"oeffnen t s"_s}));
    QTRY_VERIFY(!bote->laeuft());
    QCOMPARE(bote->zeilen(), QStringList(u"zweite"_s));
    QCOMPARE(bote->ende(), 0);
}

void TestEinzelinstanz::ohneSperreEntscheidetDerName()
{
    umgebung.insert(u"XDG_DATA_HOME"_s, u"/proc/hier/nicht"_s);
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "m");
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen m "_s);
    QTRY_VERIFY(!zweiter->laeuft());
    QCOMPARE(zweiter->zeilen(), QStringList(u"zweite"_s));
    erster->signal(SIGSTOP);
    const auto dritter = start();
    QTRY_VERIFY(!dritter->laeuft());
    QCOMPARE(dritter->zeilen(), QStringList(u"stumm"_s));
}

// Somebody who connects and says nothing.
void TestEinzelinstanz::eineHalbeVerbindungHaeltNichtAuf()
{
    ohneBus();
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const Frage stiller;
    const auto zweiter = start({}, "x");
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen x "_s);
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
    // Longer than any message can be.
    const auto dritter = start({}, QByteArray(120'000, 'x'), QByteArray(120'000, 'y'));
    QTRY_COMPARE(erster->zeilen().value(2), u"oeffnen  "_s);
}

void TestEinzelinstanz::dieSperreLiegtBeiDenDaten()
{
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    QVERIFY(QDir(appOrdner()).exists(u"de.kalvaro.kalvaro.lock"_s));
    QVERIFY(QDir(laufzeit->path()).isEmpty());
    struct stat art = {};
    const QString socket = datei(u"de.kalvaro.kalvaro.socket"_s);
    QCOMPARE(::stat(QFile::encodeName(socket).constData(), &art), 0);
    QCOMPARE(art.st_mode & 0777U, 0700U);
    QCOMPARE(erster->ende(), 0);
    QVERIFY(!QFile::exists(socket));
}

void TestEinzelinstanz::einLangerPfadGenuegt()
{
    ohneBus();
    umgebung.insert(u"XDG_DATA_HOME"_s, laufzeit->filePath(QString(200, u'x')));
    const auto erster = start();
    QTRY_COMPARE(erster->zeilen(), QStringList(u"erste"_s));
    const auto zweiter = start({}, "m");
    QTRY_COMPARE(erster->zeilen().value(1), u"oeffnen m "_s);
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
