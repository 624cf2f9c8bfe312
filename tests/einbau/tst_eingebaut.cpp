// The program as it runs where it is installed.

#include "democloud.h"
#include "doubles/dateien.h"
#include "doubles/kindprogramm.h"
#include "doubles/testbus.h"
#include "e2e/anzeige.h"
#include "einbau/einbau.h"
#include "platform/linux/xdganmeldestart.h"
#include "testlauf.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QRegularExpression>

#include <csignal>
#include <optional>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 30'000; // milliseconds
const QString gestartet = u"gestartet (1.4, Gerät demo-mac)"_s;

} // namespace

class TestEingebaut final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void eintragFolgtDemEingebautenProgramm();
    void imBauordnerOhneSymbol();
    void bildmodusRuehrtDenEintragNichtAn();
    void fensterHatEinSymbol_data();
    void fensterHatEinSymbol();
    void derBusStartetDasProgramm();

private:
    [[nodiscard]] QString datei(const QString &name) const { return ordner->filePath(name); }
    [[nodiscard]] QStringList protokoll() const
    {
        return logzeilen(datei(u"daten/kalvaro/kalvaro.log"_s));
    }
    [[nodiscard]] QByteArray eintrag() const
    {
        return dateiLesen(datei(u"config/autostart/de.kalvaro.kalvaro.desktop"_s));
    }
    void eintragSchreiben(const QString &symbol);

    std::optional<Einbau> einbau;
    std::optional<Anzeige> anzeige;
    std::optional<Testbus> bus;
    std::optional<Democloud> cloud;
    std::optional<QTemporaryDir> ordner;
    QProcessEnvironment umgebung;
    QString programm;
};

void TestEingebaut::initTestCase()
{
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"xwininfo"_s, u"xprop"_s);
    einbau.emplace(Einbau::Art::Praefix);
    programm = einbau->ort(u"bin/kalvaro"_s);
    anzeige.emplace();
}

void TestEingebaut::init()
{
    ordner.emplace();
    cloud.emplace();
    QVERIFY(cloud->starten());
    dateiSchreiben(datei(u"daten/kalvaro/konto.json"_s), demokonto(cloud->adresse()));
    umgebung = anzeige->umgebung(u"disabled:"_s);
    umgebung.insert(u"HOME"_s, ordner->path());
    umgebung.insert(u"XDG_DATA_HOME"_s, datei(u"daten"_s));
    umgebung.insert(u"XDG_CONFIG_HOME"_s, datei(u"config"_s));
    umgebung.insert(u"XDG_RUNTIME_DIR"_s, ordner->path());
    umgebung.insert(u"XDG_DATA_DIRS"_s,
                    einbau->ort(u"share"_s) + u":/usr/local/share:/usr/share"_s);
    umgebung.insert(u"KALVARO_APPLICATIONS"_s, datei(u"programme"_s));
    bus.emplace(umgebung, einbau->ort(u"share/dbus-1/services"_s));
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus->adresse());
}

void TestEingebaut::cleanup()
{
    bus.reset();
    cloud.reset();
    ordner.reset();
}

void TestEingebaut::eintragSchreiben(const QString &symbol)
{
    XdgAnmeldestart(u"/weg/kalvaro"_s, datei(u"config/autostart"_s), symbol).setzen(true);
    QVERIFY(eintrag().contains("/weg/kalvaro"));
}

void TestEingebaut::eintragFolgtDemEingebautenProgramm()
{
    eintragSchreiben({});
    Kindprogramm kalvaro(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(bald([&] { return protokoll().contains(gestartet); }, geduld));
    QVERIFY2(eintrag().contains("\nExec=\"" + programm.toUtf8() + "\" --hintergrund\n"),
             eintrag().constData());
    QVERIFY2(eintrag().contains("\nIcon=de.kalvaro.kalvaro\n"), eintrag().constData());
    QCOMPARE(protokoll().value(0), gestartet);
}

void TestEingebaut::imBauordnerOhneSymbol()
{
    umgebung.insert(u"XDG_DATA_DIRS"_s, datei(u"leer"_s));
    eintragSchreiben(u"de.kalvaro.kalvaro"_s);
    Kindprogramm kalvaro(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(bald([&] { return protokoll().contains(gestartet); }, geduld));
    QVERIFY2(eintrag().contains(programm.toUtf8()), eintrag().constData());
    QVERIFY2(!eintrag().contains("Icon"), eintrag().constData());
}

void TestEingebaut::bildmodusRuehrtDenEintragNichtAn()
{
    eintragSchreiben({});
    const QByteArray vorher = eintrag();
    Kindprogramm kalvaro(programm, {u"--bild"_s, datei(u"bild.png"_s)}, umgebung);
    QCOMPARE(kalvaro.ende(), 0);
    QCOMPARE(eintrag(), vorher);
}

void TestEingebaut::fensterHatEinSymbol_data()
{
    QTest::addColumn<bool>("konto");
    QTest::newRow("main window") << true;
    QTest::newRow("alert without an account") << false;
}

// _NET_WM_ICON, for desktops that do not look into the starter.
void TestEingebaut::fensterHatEinSymbol()
{
    QFETCH(bool, konto);
    if (!konto) {
        QVERIFY(QFile::remove(datei(u"daten/kalvaro/konto.json"_s)));
    }
    Kindprogramm kalvaro(programm, {}, umgebung);
    const QRegularExpression fenster(u"(0x[0-9a-f]+) \"[^\"]*\": \\(\"kalvaro\" \"kalvaro\"\\)"_s);
    QString symbol;
    QVERIFY(bald(
        [&] {
            const QString baum = anzeige->ausgabe(u"xwininfo"_s, {u"-root"_s, u"-tree"_s});
            const QString id = fenster.match(baum).captured(1);
            symbol = anzeige->ausgabe(u"xprop"_s, {u"-id"_s, id, u"_NET_WM_ICON"_s});
            return symbol.contains(u"_NET_WM_ICON(CARDINAL)"_s);
        },
        geduld));
    QVERIFY2(symbol.contains(u"Icon (64 x 64)"_s), qPrintable(symbol));
}

void TestEingebaut::derBusStartetDasProgramm()
{
    QDBusConnection verbindung = bus->verbindung();
    QDBusMessage ruf =
        QDBusMessage::createMethodCall(u"de.kalvaro.kalvaro"_s, u"/de/kalvaro/kalvaro"_s,
                                       u"org.freedesktop.Application"_s, u"Activate"_s);
    ruf.setArguments({QVariantMap()});
    const QDBusMessage antwort = verbindung.call(ruf, QDBus::Block, geduld);
    QVERIFY2(antwort.type() == QDBusMessage::ReplyMessage, qPrintable(antwort.errorMessage()));
    QVERIFY(bald([&] { return protokoll().contains(gestartet); }, geduld));
    const uint pid = verbindung.interface()->servicePid(u"de.kalvaro.kalvaro"_s);
    QCOMPARE(QFileInfo(u"/proc/%1/exe"_s.arg(pid)).symLinkTarget(), programm);
    QCOMPARE(::kill(static_cast<pid_t>(pid), SIGTERM), 0);
    QVERIFY(
        bald([&] { return !verbindung.interface()->isServiceRegistered(u"de.kalvaro.kalvaro"_s); },
             geduld));
}

KALVARO_TEST(TestEingebaut)
#include "tst_eingebaut.moc"
