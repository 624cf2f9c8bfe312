// The real program as a process, in folders of its own, without a display and without a bus.

#include "democloud.h"

#include "app/zuhause.h"
#include "doubles/fristen.h"
#include "doubles/kindprogramm.h"
#include "doubles/rohserver.h"
#include "doubles/testbus.h"
#include "testlauf.h"
#include "ui/erscheinung.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDir>
#include <QImage>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace kalvaro;
using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

namespace {

constexpr int frist = 20'000; // ms before a test gives up

const QString nichtEingerichtet = u"kalvaro ist auf diesem Mac noch nicht eingerichtet."_s;

class Lauf final : public Kindprogramm
{
public:
    Lauf(const Zuhause &wo, const QStringList &argumente)
        : Kindprogramm(QStringLiteral(KALVARO_PROGRAMM), argumente, wo.umgebung())
    {
    }
};

void einrichten(const Zuhause &zuhause, Democloud &cloud)
{
    QVERIFY(cloud.starten());
    zuhause.kontoSchreiben(cloud.adresse());
}

// Whether somebody is the only one.
bool gesperrt(const Zuhause &zuhause)
{
    const QByteArray datei = QFile::encodeName(zuhause.daten() + u"/de.kalvaro.kalvaro.lock"_s);
    const int fd = ::open(datei.constData(), O_RDWR | O_CLOEXEC);
    const bool ja = fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0;
    ::close(fd);
    return ja;
}

QStringList wege(const Democloud &cloud)
{
    QStringList liste;
    const auto anfragen = cloud.anfragen();
    for (const Anfrage &anfrage : anfragen) {
        liste.append(QString::fromLatin1(anfrage.methode) + u' ' + anfrage.pfad);
    }
    return liste;
}

} // namespace

class TestProgrammlauf final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KALVARO_BRAUCHT_EIGENE_PROZESSE(); }

    void bild_data()
    {
        QTest::addColumn<QStringList>("davor");
        QTest::newRow("alone") << QStringList();
        QTest::newRow("with --hintergrund") << QStringList{u"--hintergrund"_s};
    }
    void bild()
    {
        QFETCH(const QStringList, davor);
        const Zuhause zuhause;
        Democloud cloud({.szenario = Szenario::Aktuell});
        einrichten(zuhause, cloud);
        const QString pfad = zuhause.datei(u"ein bild.png"_s);

        Lauf lauf(zuhause, davor + QStringList{u"--bild"_s, pfad});

        QCOMPARE(lauf.ende(), 0);
        const QImage gemalt(pfad, "PNG");
        QCOMPARE(gemalt.width(), 520);
        // No desktop brings colours here, so the window has the program's own.
        QCOMPARE(gemalt.pixelColor(2, 2), eigenePalette(false).color(QPalette::Window));
        const QStringList ausgabe = QString::fromUtf8(lauf.ausgabe()).split(u'\n');
        QCOMPARE(ausgabe.size(), 3);
        QCOMPARE(ausgabe[0], u"Bibliothek ist abgeglichen"_s);
        QVERIFY(ausgabe[1].startsWith(u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s));
        QCOMPARE(lauf.fehlerausgabe(), QByteArray());
        QCOMPARE(zuhause.protokoll(), QStringList{u"gestartet (1.4, Gerät demo-mac)"_s});
        QCOMPARE(wege(cloud), (QStringList{u"GET /api/status"_s, u"POST /api/abgleich"_s}));
    }

    void bildOhneCloud()
    {
        const Zuhause zuhause;
        Rohserver server;
        server.verweigern();
        zuhause.kontoSchreiben(server.adresse());
        const QString pfad = zuhause.datei(u"bild.png"_s);

        Lauf lauf(zuhause, {u"--bild"_s, pfad});

        QCOMPARE(lauf.ende(), 0);
        QVERIFY(!QImage(pfad).isNull());
        QVERIFY(lauf.ausgabe().startsWith("Nicht abgeglichen\nKeine Verbindung"));
    }

    void ohneKonto_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::newRow("by hand") << QStringList();
        QTest::newRow("at login") << QStringList{u"--hintergrund"_s};
        QTest::newRow("for a picture") << QStringList{u"--bild"_s, u"/gibt/es/nicht/bild.png"_s};
    }
    void ohneKonto()
    {
        QFETCH(const QStringList, argumente);
        const Zuhause zuhause;

        Lauf lauf(zuhause, argumente);

        QCOMPARE(lauf.ende(), 0);
        const QStringList fehler = QString::fromUtf8(lauf.fehlerausgabe()).split(u'\n');
        QCOMPARE(fehler.size(), 3);
        QCOMPARE(fehler[0], nichtEingerichtet);
        QVERIFY2(fehler[1].contains(zuhause.daten() + u"/konto.json"_s), qPrintable(fehler[1]));
        QCOMPARE(lauf.ausgabe(), QByteArray());
        QCOMPARE(zuhause.protokoll(), QStringList());
        QVERIFY(QDir(zuhause.daten()).exists()); // where the message says the account belongs
    }

    // Both only print: no data folder, no display, no account.
    void nurAuskunft_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("anfang");
        QTest::newRow("--help") << u"--help"_s << u"kalvaro 1.4 – "_s;
        QTest::newRow("--version") << u"--version"_s << u"kalvaro 1.4\n"_s;
    }
    void nurAuskunft()
    {
        QFETCH(const QString, option);
        QFETCH(const QString, anfang);
        const Zuhause zuhause;

        Lauf lauf(zuhause, {u"--hintergrund"_s, option});

        QCOMPARE(lauf.ende(), 0);
        QVERIFY(QString::fromUtf8(lauf.ausgabe()).startsWith(anfang));
        QCOMPARE(lauf.fehlerausgabe(), QByteArray());
        QVERIFY(!QDir(zuhause.daten()).exists());
    }

    // Whatever is in flight, the program ends within a second.
    void signale_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QStringList>("argumente");
        const QStringList bild{u"--bild"_s, u"/gibt/es/nicht/bild.png"_s};
        QTest::newRow("SIGTERM while the server hangs") << SIGTERM << QStringList();
        QTest::newRow("SIGINT while the server hangs") << SIGINT << QStringList();
        QTest::newRow("SIGTERM while the picture waits") << SIGTERM << bild;
        QTest::newRow("SIGINT while the picture waits") << SIGINT << bild;
    }
    void signale()
    {
        QFETCH(const int, signal);
        QFETCH(const QStringList, argumente);
        const Zuhause zuhause;
        Rohserver server;
        server.dann(Rohserver::antwort(200, "{}"));
        server.sonst({.bytes = {}, .ende = Rohserver::Ende::Offenlassen});
        zuhause.kontoSchreiben(server.adresse());
        Lauf lauf(zuhause, argumente);
        QTRY_VERIFY_WITH_TIMEOUT(server.verbindungen() == 2 &&
                                     server.empfangen()[1].startsWith("POST /api/abgleich"),
                                 frist);

        const qint64 dauer = lauf.beenden(signal);

        QVERIFY2(dauer >= 0 && dauer <= endfrist, qPrintable(QString::number(dauer)));
        QCOMPARE(lauf.fehlerausgabe(), QByteArray());
    }

    void signalInRuhe()
    {
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        Lauf lauf(zuhause, {u"--hintergrund"_s});
        QTRY_COMPARE_WITH_TIMEOUT(zuhause.protokoll().size(), 1, frist);

        const qint64 dauer = lauf.beenden(SIGTERM);

        QVERIFY2(dauer >= 0 && dauer <= endfrist, qPrintable(QString::number(dauer)));
        QVERIFY(cloud.anfragen().isEmpty());
    }

    // After kill -9 in the middle of a sync the next start is like any other.
    void nachDemAbschuss()
    {
        const Zuhause zuhause;
        Democloud cloud({.dauer = 3600});
        einrichten(zuhause, cloud);
        {
            Lauf lauf(zuhause, {});
            QTRY_COMPARE_WITH_TIMEOUT(cloud.laufendeAbgleiche(), 1, frist);
            lauf.toeten();
            QVERIFY(!lauf.laeuft());
        }
        cloud.setDauer(0);
        QTRY_COMPARE_WITH_TIMEOUT(cloud.laufendeAbgleiche(), 0, frist);
        cloud.anfragenVergessen();

        Lauf lauf(zuhause, {});

        QTRY_COMPARE_WITH_TIMEOUT(
            wege(cloud), (QStringList{u"GET /api/status"_s, u"POST /api/abgleich"_s}), frist);
        QTRY_VERIFY_WITH_TIMEOUT(zuhause.protokoll().size() == 5, frist);
        QVERIFY(zuhause.protokoll()[4].startsWith(u"  -> gut: Bibliothek ist abgeglichen | "_s));
        QVERIFY(lauf.beenden(SIGTERM) >= 0);
    }

    // Without a bus too: the second start ends at once and the first one opens with a sync.
    void zweiterStart()
    {
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        Lauf erster(zuhause, {u"--hintergrund"_s});
        QTRY_COMPARE_WITH_TIMEOUT(zuhause.protokoll().size(), 1, frist);

        Lauf leiser(zuhause, {u"--hintergrund"_s});
        QCOMPARE(leiser.ende(), 0);
        QVERIFY(cloud.anfragen().isEmpty());
        Lauf zweiter(zuhause, {});
        QCOMPARE(zweiter.ende(), 0);

        QTRY_VERIFY_WITH_TIMEOUT(zuhause.protokoll().size() >= 2, frist);
        QCOMPARE(zuhause.protokoll().first(2),
                 (QStringList{u"gestartet (1.4, Gerät demo-mac)"_s, u"Abgleich (vorstart) ..."_s}));
        QVERIFY(erster.beenden(SIGTERM) >= 0);
    }

    void wuenscheErreichenDenErsten()
    {
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        Lauf erster(zuhause, {u"--hintergrund"_s});
        QTRY_COMPARE_WITH_TIMEOUT(zuhause.protokoll().size(), 1, frist);

        Lauf abgleich(zuhause, {u"--abgleichen"_s});
        QCOMPARE(abgleich.ende(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(zuhause.protokoll().size() >= 2, frist);
        QCOMPARE(zuhause.protokoll()[1], u"Abgleich (hand) ..."_s);
        Lauf ende(zuhause, {u"--beenden"_s});
        QCOMPARE(ende.ende(), 0);

        QCOMPARE(erster.ende(), 0);
        QCOMPARE(zuhause.protokoll().last(), u"beendet"_s);
    }

    // Whoever starts it learns that nothing will come of it, in place of a status of 0 and silence.
    void einErsterDerHaengt_data()
    {
        QTest::addColumn<QStringList>("argumente");
        QTest::newRow("by hand") << QStringList();
        QTest::newRow("to end it") << QStringList{u"--beenden"_s};
        QTest::newRow("at login") << QStringList{u"--hintergrund"_s};
        QTest::newRow("by the bus") << QStringList{u"--dienst"_s};
    }
    void einErsterDerHaengt()
    {
        QFETCH(const QStringList, argumente);
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        Lauf erster(zuhause, {u"--hintergrund"_s});
        QTRY_COMPARE_WITH_TIMEOUT(zuhause.protokoll().size(), 1, frist);
        erster.signal(SIGSTOP);

        Lauf zweiter(zuhause, argumente);

        QCOMPARE(zweiter.ende(), 1);
        QCOMPARE(QString::fromUtf8(zweiter.fehlerausgabe()),
                 u"kalvaro läuft bereits, antwortet aber nicht.\n"_s);
        QCOMPARE(zuhause.protokoll().size(), 1);
        erster.signal(SIGCONT);
        QVERIFY(erster.beenden(SIGTERM) >= 0);
    }

    // One that is about to end may not promise anything to the next.
    void startGleichNachDemEnde()
    {
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        for (int i = 1; i <= 10; ++i) {
            Lauf erster(zuhause, {u"--hintergrund"_s});
            QTRY_VERIFY_WITH_TIMEOUT(gesperrt(zuhause), frist);
            erster.signal(SIGTERM);
            Lauf zweiter(zuhause, {u"--hintergrund"_s});
            (void)erster.ende(); // it may be too young to have a handler for the signal
            QTRY_VERIFY_WITH_TIMEOUT(gesperrt(zuhause), frist);
            Lauf ende(zuhause, {u"--beenden"_s});
            QCOMPARE(ende.ende(), 0);
            QCOMPARE(zweiter.ende(), 0);
            QCOMPARE(zuhause.protokoll().count(u"beendet"_s), i);
        }
    }

    void derBusStirbtUnterDemErsten()
    {
        KALVARO_BRAUCHT(u"dbus-daemon"_s);
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        Testbus bus;
        QProcessEnvironment umgebung = zuhause.umgebung();
        umgebung.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.adresse());
        Kindprogramm erster(QStringLiteral(KALVARO_PROGRAMM), {u"--hintergrund"_s}, umgebung);
        QTRY_COMPARE_WITH_TIMEOUT(zuhause.protokoll().size(), 1, frist);
        bus.beenden();

        Kindprogramm ende(QStringLiteral(KALVARO_PROGRAMM), {u"--beenden"_s}, umgebung);

        QCOMPARE(ende.ende(), 0);
        QCOMPARE(erster.ende(), 0);
        QCOMPARE(zuhause.protokoll().last(), u"beendet"_s);
    }

    void beendenOhneErsten()
    {
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);

        Lauf lauf(zuhause, {u"--beenden"_s});

        QCOMPARE(lauf.ende(), 0);
        QCOMPARE(zuhause.protokoll(), QStringList());
        QVERIFY(cloud.anfragen().isEmpty());
    }

    // What killed saves left behind lay there for ever. Only the one that runs clears it away.
    void resteVerschwindenBeimNaechstenStart()
    {
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        const QStringList reste{
            zuhause.daten() + u"/einstellungen.json.AbCdEf"_s,
            zuhause.datei(u"config/autostart/de.kalvaro.kalvaro.desktop.XyzABC"_s)};
        for (const QString &rest : reste) {
            dateiSchreiben(rest, "{");
        }
        Lauf bild(zuhause, {u"--bild"_s, zuhause.datei(u"bild.png"_s)});
        QCOMPARE(bild.ende(), 0);
        QVERIFY(QFile::exists(reste[0]) && QFile::exists(reste[1]));

        Lauf lauf(zuhause, {u"--hintergrund"_s});
        QTRY_COMPARE_WITH_TIMEOUT(zuhause.protokoll().size(), 2, frist);

        QVERIFY(!QFile::exists(reste[0]));
        QVERIFY(!QFile::exists(reste[1]));
        QVERIFY(lauf.beenden(SIGTERM) >= 0);
    }

    // They led into whatever folder the program was started in.
    void relativeOrdnerGeltenNicht()
    {
        const Zuhause zuhause;
        dateiSchreiben(zuhause.datei(u".local/share/kalvaro/konto.json"_s),
                       demokonto(u"http://127.0.0.1:9"_s));
        QProcessEnvironment umgebung = zuhause.umgebung();
        umgebung.insert(u"XDG_DATA_HOME"_s, u"daten"_s);
        umgebung.insert(u"XDG_CONFIG_HOME"_s, u"config"_s);
        umgebung.insert(u"XDG_RUNTIME_DIR"_s, u"lauf"_s);
        const QString log = zuhause.datei(u".local/share/kalvaro/kalvaro.log"_s);

        Kindprogramm lauf(QStringLiteral(KALVARO_PROGRAMM), {u"--hintergrund"_s}, umgebung);

        QTRY_COMPARE_WITH_TIMEOUT(logzeilen(log).size(), 1, frist);
        QVERIFY(lauf.beenden(SIGTERM) >= 0);
        QVERIFY(!QDir(u"daten"_s).exists());
    }

    // The bus starts the program and says next what for.
    void vomBusGestartet()
    {
        KALVARO_BRAUCHT(u"dbus-daemon"_s);
        const Zuhause zuhause;
        Democloud cloud;
        einrichten(zuhause, cloud);
        dateiSchreiben(zuhause.datei(u"dienste/de.kalvaro.kalvaro.service"_s),
                       "[D-BUS Service]\nName=de.kalvaro.kalvaro\nExec=\"" KALVARO_PROGRAMM
                       "\" --dienst\n");
        Testbus bus(zuhause.umgebung(), zuhause.datei(u"dienste"_s));
        QDBusInterface dienst(u"de.kalvaro.kalvaro"_s, u"/de/kalvaro/kalvaro"_s,
                              u"org.freedesktop.Application"_s, bus.verbindung());
        const auto aktion = [&dienst](const QString &name) {
            const QDBusReply<void> antwort =
                dienst.call(u"ActivateAction"_s, name, QVariantList(), QVariantMap());
            QVERIFY2(antwort.isValid(), qPrintable(antwort.error().message()));
        };
        QDBusConnectionInterface *const namen = dienst.connection().interface();
        const auto laeuft = [namen] {
            return namen->isServiceRegistered(u"de.kalvaro.kalvaro"_s).value();
        };

        aktion(u"beenden"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!laeuft(), frist);
        QCOMPARE(zuhause.protokoll(), QStringList());

        aktion(u"abgleichen"_s);
        QTRY_VERIFY_WITH_TIMEOUT(zuhause.protokoll().size() >= 2, frist);
        QCOMPARE(zuhause.protokoll().first(2),
                 (QStringList{u"gestartet (1.4, Gerät demo-mac)"_s, u"Abgleich (vorstart) ..."_s}));

        aktion(u"beenden"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!laeuft(), frist);
        QCOMPARE(zuhause.protokoll().last(), u"beendet"_s);
    }
};

KALVARO_TEST(TestProgrammlauf)
#include "tst_programmlauf.moc"
