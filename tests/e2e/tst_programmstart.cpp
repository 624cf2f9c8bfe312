// What the program settles before its first window and for its end, seen from outside.

#include "app/zuhause.h"
#include "democloud.h"
#include "doubles/fristen.h"
#include "doubles/kindprogramm.h"
#include "doubles/rohserver.h"
#include "doubles/testbus.h"
#include "e2e/anzeige.h"
#include "e2e/leiste.h"
#include "platform/linux/einzelinstanzsperre.h"
#include "platform/linux/xanzeige.h"
#include "testlauf.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <optional>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

constexpr int geduld = 30'000; // milliseconds

const QString programm = QStringLiteral(KALVARO_PROGRAMM);
const QString gestartet = u"gestartet (1.4, Gerät demo-mac)"_s;

// A first instance that only keeps what it is asked.
class ErsteInstanz
{
public:
    explicit ErsteInstanz(const QString &ordner)
        : sperre_(ordner, [this](const QByteArray &nachricht) {
            bitten.append(QJsonDocument::fromJson(nachricht).object());
            return true;
        })
    {
        if (sperre_.nehmen() != Einzelinstanzsperre::Stand::Gehalten) {
            qFatal("Another one runs in the test's folder");
        }
    }

    QList<QJsonObject> bitten;

private:
    Einzelinstanzsperre sperre_;
};

// The ids of the processes of this name; there are only the test's own.
QStringList prozesse(const QString &name)
{
    QProcess pgrep;
    pgrep.start(u"/usr/bin/pgrep"_s, {u"-x"_s, name});
    pgrep.waitForFinished(geduld);
    return QString::fromLatin1(pgrep.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

// What the running kalvaro has mapped into its memory.
QString geladenes()
{
    const QString pid = prozesse(u"kalvaro"_s).value(0);
    return QString::fromUtf8(dateiLesen(u"/proc/%1/maps"_s.arg(pid)));
}

} // namespace

class TestProgrammstart final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void ohneAnzeigeEntstehtDasBild();
    void eineGewaehlteAnzeigeBleibt();
    void dasBildEntstehtNebenEinemLaufendenProgramm();
    void dieAnzeigeLerntDenNamen();
    void waylandLerntDieKennung();
    void einHaengenderBusHaeltNichtAuf();
    void dieMarkeDesStartsErreichtDenErsten();
    void einStartImHintergrundOeffnetNichts();
    void deutschAuchOhneDeutschesSystem();
    void dasEndeWartetAufKeinenNamen();
    void rekordboxLiegtInApplications();
    void diePruefungWartetAufKeinenNamen();
    void dieAnzeigeSagtObSieEineLeisteHat();
    void dieAnzeigeFaengtNichtVonVornAn();

private:
    [[nodiscard]] bool protokolliert(const QString &zeile) const
    {
        return bald([&] { return zuhause->protokoll().contains(zeile); }, geduld);
    }
    void anAnzeige();

    std::optional<Anzeige> anzeige;
    std::optional<Zuhause> zuhause;
    std::optional<Democloud> cloud;
    QProcessEnvironment umgebung;
};

void TestProgrammstart::initTestCase()
{
    KALVARO_BRAUCHT_EIGENE_PROZESSE();
    KALVARO_BRAUCHT(u"Xvfb"_s, u"dbus-daemon"_s, u"pgrep"_s, u"unshare"_s, u"weston"_s,
                    u"xwininfo"_s);
}

void TestProgrammstart::init()
{
    zuhause.emplace();
    cloud.emplace();
    QVERIFY(cloud->starten());
    zuhause->kontoSchreiben(cloud->adresse());
    umgebung = zuhause->umgebung();
}

void TestProgrammstart::cleanup()
{
    cloud.reset();
    zuhause.reset();
    // A rekordbox outlives who started it, and the next test must not find it.
    const QStringList laufende = prozesse(u"rekordbox"_s);
    for (const QString &pid : laufende) {
        ::kill(pid.toInt(), SIGKILL);
    }
    QVERIFY(bald([] { return prozesse(u"rekordbox"_s).isEmpty(); }, geduld));
}

// The program has to find the display by itself.
void TestProgrammstart::anAnzeige()
{
    if (!anzeige) {
        anzeige.emplace();
    }
    umgebung.remove(u"QT_QPA_PLATFORM"_s);
    umgebung.insert(u"DISPLAY"_s, anzeige->name());
}

void TestProgrammstart::ohneAnzeigeEntstehtDasBild()
{
    umgebung.remove(u"QT_QPA_PLATFORM"_s);
    const QString pfad = zuhause->datei(u"bild.png"_s);
    Kindprogramm kalvaro(programm, {u"--bild"_s, pfad}, umgebung);
    QCOMPARE(kalvaro.ende(), 0);
    QCOMPARE(QImage(pfad).width(), 520);
}

void TestProgrammstart::eineGewaehlteAnzeigeBleibt()
{
    umgebung.insert(u"QT_QPA_PLATFORM"_s, u"minimal"_s);
    Kindprogramm kalvaro(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(protokolliert(gestartet));
    QVERIFY2(geladenes().contains(u"/libqminimal.so\n"_s), qPrintable(geladenes()));
}

void TestProgrammstart::dasBildEntstehtNebenEinemLaufendenProgramm()
{
    Kindprogramm erstes(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(protokolliert(gestartet));

    const QString pfad = zuhause->datei(u"bild.png"_s);
    Kindprogramm bild(programm, {u"--bild"_s, pfad}, umgebung);
    QCOMPARE(bild.ende(), 0);
    QCOMPARE(QImage(pfad).width(), 520);
    QCOMPARE(zuhause->protokoll(), QStringList({gestartet, gestartet}));
}

// Whatever the file is called that was started: task bars label its windows by this.
void TestProgrammstart::dieAnzeigeLerntDenNamen()
{
    anAnzeige();
    const QString anders = zuhause->datei(u"anders"_s);
    QVERIFY(QFile::link(programm, anders));
    Kindprogramm kalvaro(anders, {}, umgebung);
    QString fenster;
    QVERIFY(bald(
        [&] {
            fenster = anzeige->ausgabe(u"xwininfo"_s, {u"-root"_s, u"-tree"_s});
            return fenster.contains(u" \"kalvaro\": (\""_s); // title and class
        },
        geduld));
    QVERIFY2(fenster.contains(u" \"kalvaro\": (\"anders\" \"kalvaro\") "_s), qPrintable(fenster));
}

// By it a Wayland desktop finds the program's name and icon. The toolkit writes on standard error
// what it tells the desktop.
void TestProgrammstart::waylandLerntDieKennung()
{
    umgebung.remove(u"QT_QPA_PLATFORM"_s);
    umgebung.remove(u"XDG_SESSION_TYPE"_s);
    const QString anschluss = u"wayland-test"_s;
    const Kindprogramm weston(u"weston"_s,
                              {u"--backend=headless-backend.so"_s, u"--shell=kiosk-shell.so"_s,
                               u"--no-config"_s, u"--socket="_s + anschluss},
                              umgebung);
    const QString ordner = umgebung.value(u"XDG_RUNTIME_DIR"_s);
    QVERIFY(bald([&] { return QFile::exists(ordner + u'/' + anschluss); }, geduld));
    umgebung.insert(u"WAYLAND_DISPLAY"_s, anschluss);
    umgebung.insert(u"WAYLAND_DEBUG"_s, u"1"_s);
    Kindprogramm kalvaro(programm, {}, umgebung);
    QByteArray gesagt;
    QVERIFY(bald(
        [&] {
            gesagt += kalvaro.fehlerausgabe();
            return gesagt.contains("set_app_id(\"");
        },
        geduld));
    QVERIFY2(gesagt.contains("set_app_id(\"de.kalvaro.kalvaro\")"), gesagt.constData());
}

// Nor the toolkit, which under KDE asks the bus before the program does.
void TestProgrammstart::einHaengenderBusHaeltNichtAuf()
{
    anAnzeige();
    umgebung.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    umgebung.insert(u"KDE_FULL_SESSION"_s, u"true"_s);
    umgebung.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    Testbus bus;
    bus.anhalten();
    umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.adresse());
    QElapsedTimer zeit;
    zeit.start();
    Kindprogramm kalvaro(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(protokolliert(gestartet));
    QVERIFY2(zeit.elapsed() < 15'000, qPrintable(QString::number(zeit.elapsed())));
}

// Without it the desktop would not let the first one's window come to the front.
void TestProgrammstart::dieMarkeDesStartsErreichtDenErsten()
{
    anAnzeige();
    const ErsteInstanz erste(zuhause->daten());
    umgebung.insert(u"DESKTOP_STARTUP_ID"_s, u"klick-1"_s);
    Kindprogramm zweite(programm, {}, umgebung);
    QVERIFY(bald([&] { return !zweite.laeuft(); }, geduld));
    QCOMPARE(zweite.ende(), 0);
    QCOMPARE(erste.bitten, QList<QJsonObject>({{{u"aktion"_s, QString()},
                                                {u"desktop-startup-id"_s, u"klick-1"_s}}}));
    QCOMPARE(zuhause->protokoll(), QStringList());
}

void TestProgrammstart::einStartImHintergrundOeffnetNichts()
{
    const ErsteInstanz erste(zuhause->daten());
    Kindprogramm zweite(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(bald([&] { return !zweite.laeuft(); }, geduld)); // whoever asks waits for the answer
    QCOMPARE(zweite.ende(), 0);
    QCOMPARE(erste.bitten, QList<QJsonObject>({{{u"aktion"_s, u"hintergrund"_s}}}));
    QCOMPARE(zuhause->protokoll(), QStringList());
}

void TestProgrammstart::deutschAuchOhneDeutschesSystem()
{
    Kindprogramm kalvaro(programm, {u"--hintergrund"_s}, umgebung);
    QVERIFY(protokolliert(gestartet));
    QVERIFY2(geladenes().contains(u"/qtbase_de.qm\n"_s), qPrintable(geladenes()));
}

// A look-up cannot be cancelled, and the toolkit waits for it.
void TestProgrammstart::dasEndeWartetAufKeinenNamen()
{
    zuhause->kontoSchreiben(u"http://cloud.invalid"_s);
    const QString gefragt = zuhause->datei(u"gefragt"_s);
    const QString vorgeladen = zuhause->datei(u"namenlos.so"_s); // the loader parts paths at blanks
    QVERIFY(QFile::copy(QStringLiteral(NAMENLOS), vorgeladen));
    umgebung.insert(u"LD_PRELOAD"_s, vorgeladen);
    umgebung.insert(u"NAMENLOS_GEFRAGT"_s, gefragt);
    Kindprogramm kalvaro(programm, {}, umgebung);
    QVERIFY(bald([&] { return QFile::exists(gefragt); }, geduld));

    const qint64 dauer = kalvaro.beenden(SIGTERM);

    QVERIFY2(dauer >= 0 && dauer <= endfrist, qPrintable(QString::number(dauer)));
}

void TestProgrammstart::rekordboxLiegtInApplications()
{
    const QString wurzel = zuhause->datei(u"wurzel"_s);
    QVERIFY(QDir().mkpath(wurzel));
    dateiSchreiben(zuhause->daten() + u"/einstellungen.json"_s, R"({"autostart":true})");
    umgebung.remove(u"KALVARO_APPLICATIONS"_s);
    Kindprogramm kalvaro(QStringLiteral(MIT_APPLICATIONS),
                         {QStringLiteral(PROGRAMME), wurzel, programm}, umgebung);
    QVERIFY(protokolliert(u"rekordbox 7.1.4 gestartet"_s));
    QVERIFY(kalvaro.beenden(SIGTERM) >= 0);
}

// The answer is there in time, and so is the end with its status.
void TestProgrammstart::diePruefungWartetAufKeinenNamen()
{
    zuhause->kontoSchreiben(u"http://cloud.invalid"_s);
    const QString vorgeladen = zuhause->datei(u"namenlos.so"_s);
    QVERIFY(QFile::copy(QStringLiteral(NAMENLOS), vorgeladen));
    umgebung.insert(u"LD_PRELOAD"_s, vorgeladen);
    QElapsedTimer zeit;
    zeit.start();
    Kindprogramm kalvaro(programm, {u"--pruefen"_s}, umgebung);
    QCOMPARE(kalvaro.ende(), 1);
    QVERIFY2(zeit.elapsed() < 10'000, qPrintable(QString::number(zeit.elapsed())));
    QVERIFY(QString::fromUtf8(kalvaro.ausgabe())
                .contains(u"Die Suche nach dem Namen „cloud.invalid“ dauert zu lange. → "));
}

void TestProgrammstart::dieAnzeigeSagtObSieEineLeisteHat()
{
    anAnzeige();
    const QByteArray name = anzeige->name().toLatin1();
    const XAnzeige ohne = xAnzeigeFragen(name);
    QVERIFY(ohne.antwortet && !ohne.tray);
    const Leiste leiste(anzeige->name(), {});
    QVERIFY(xAnzeigeFragen(name).tray);
    Kindprogramm kalvaro(programm, {u"--pruefen"_s}, umgebung);
    QCOMPARE(kalvaro.ende(), 1); // without a bus
    QVERIFY(kalvaro.ausgabe().contains("✓ Menüleiste: nimmt das Symbol auf (XEmbed)\n"));
}

// A display without other clients begins anew when the one that asked whether it answers leaves.
void TestProgrammstart::dieAnzeigeFaengtNichtVonVornAn()
{
    zuhause->kontoSchreiben(u"http://127.0.0.1:9"_s);
    anzeige.emplace(Anzeige::Letzter::BringtNeubeginn);
    anAnzeige();
    for (int i = 1; i <= 10; ++i) {
        Kindprogramm kalvaro(programm, {u"--hintergrund"_s}, umgebung);
        QVERIFY2(bald([&] { return zuhause->protokoll().count(gestartet) == i; }, geduld),
                 kalvaro.fehlerausgabe().constData());
        kalvaro.toeten();
    }
}

KALVARO_TEST(TestProgrammstart)
#include "tst_programmstart.moc"
