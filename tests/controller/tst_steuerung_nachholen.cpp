// The syncs that time brings: after a background start, after one that failed, after a wake.

#include "steuerungswelt.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto offline = Scripttransport::fehler(u"Verbindung weg."_s);

} // namespace

class TestSteuerungNachholen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { p = std::make_unique<Steuerungswelt>(); }
    void cleanup() { p.reset(); }

    // At a background start with rekordbox or its agent running at the 15 s mark, no "anmeldung"
    // sync takes place.
    void anmeldung_data() { laufzeilen(); }
    void anmeldung()
    {
        QFETCH(const int, haupt);
        QFETCH(const int, agent);
        QFETCH(const QStringList, erwartet);
        p->starten(true);
        p->vor(14.9);
        QVERIFY(p->anlaesse().isEmpty());
        p->rekordboxLaeuft(false, haupt, agent);

        p->vor(0.1);
        p->rekordboxZu();
        p->vor(100);

        QCOMPARE(p->anlaesse(), QStringList(erwartet).replaceInStrings(u"x"_s, u"anmeldung"_s));
        QVERIFY(!p->steuerung->fenster());
    }

    // What found no server, a busy one or an open rekordbox is owed, and what was held back.
    void nachholen_data()
    {
        QTest::addColumn<QList<Transport::Ergebnis>>("antwort");
        QTest::addColumn<bool>("offen");
        using Antworten = QList<Transport::Ergebnis>;
        const auto zustand = [](const QString &name) { return Antworten{abgleichAntwort(name)}; };
        QTest::newRow("held back while rekordbox ran") << Antworten() << true;
        QTest::newRow("offline") << Antworten{offline} << true;
        QTest::newRow("timed out") << Antworten{Scripttransport::zeitUeberschritten()} << true;
        QTest::newRow("the cloud is busy") << zustand(u"laeuft_schon"_s) << true;
        QTest::newRow("in step") << zustand(u"aktuell"_s) << false;
        QTest::newRow("deferred") << zustand(u"verschoben"_s) << false;
        QTest::newRow("failed") << zustand(u"fehler"_s) << false;
        QTest::newRow("stopped") << zustand(u"angehalten"_s) << false;
        QTest::newRow("rekordbox was open") << zustand(u"rekordbox_offen"_s) << true;
        QTest::newRow("the cloud cannot reach this Mac") << zustand(u"nicht_erreichbar"_s) << false;
        QTest::newRow("an error of the server")
            << Antworten{Scripttransport::antwort(503)} << false;
    }
    void nachholen()
    {
        QFETCH(const QList<Transport::Ergebnis>, antwort);
        QFETCH(const bool, offen);
        p->rekordboxLaeuft(false, 1, 0); // keeps the first sync of a background start away
        p->starten(true);
        p->vor(20);
        p->rekordboxZu();
        if (!antwort.isEmpty()) {
            p->abgleiche = antwort;
            p->abgleich(Anlass::Hand);
        }
        p->vor(579.9);
        p->netz.vergessen();

        p->vor(0.1);

        QCOMPARE(p->anlaesse(), offen ? QStringList{u"nachholen"_s} : QStringList());
    }

    void nachholenBisEsGelingt()
    {
        p->abgleiche = {offline, offline, abgleichAntwort(u"laeuft_schon"_s), gut};
        p->starten(true);

        p->vor(3600);

        QCOMPARE(p->anlaesse(),
                 (QStringList{u"anmeldung"_s, u"nachholen"_s, u"nachholen"_s, u"nachholen"_s}));
        QCOMPARE(p->statusobjekt.symbol(), u"checkmark.icloud"_s);
        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    // A catch-up tick while rekordbox or its agent runs does nothing; the next tick tries again.
    void nachholenWaehrendRekordboxLaeuft_data() { laufzeilen(); }
    void nachholenWaehrendRekordboxLaeuft()
    {
        QFETCH(const int, haupt);
        QFETCH(const int, agent);
        QFETCH(const QStringList, erwartet);
        offlineBeginnen();
        p->rekordboxLaeuft(false, haupt, agent);
        p->abgleiche = {gut};
        p->vor(585);
        QCOMPARE(p->anlaesse(), QStringList(erwartet).replaceInStrings(u"x"_s, u"nachholen"_s));

        p->rekordboxZu();
        p->vor(600);

        QCOMPARE(p->anlaesse(), QStringList{u"nachholen"_s});
    }

    // A tick that falls into a run is absorbed by the queue.
    void nachholenWaehrendEinLaufAnsteht()
    {
        offlineBeginnen();
        p->vor(500);
        p->abgleich(Anlass::Hand);
        p->vor(100);
        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});

        p->netz.beantworten(gut);
        p->vor(700);

        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
    }

    void aufgewacht_data() { laufzeilen(); }
    void aufgewacht()
    {
        QFETCH(const int, haupt);
        QFETCH(const int, agent);
        QFETCH(const QStringList, erwartet);
        ruhigBeginnen();
        p->arbeitsplatz.geweckt();
        p->vor(19.9);
        QVERIFY(p->anlaesse().isEmpty());
        p->rekordboxLaeuft(false, haupt, agent);

        p->vor(0.1);
        p->rekordboxZu();
        p->vor(60);

        QCOMPARE(p->anlaesse(), QStringList(erwartet).replaceInStrings(u"x"_s, u"aufgewacht"_s));
    }

    void zweimalAufgewacht()
    {
        ruhigBeginnen();
        p->abgleiche = {gut, gut};
        p->arbeitsplatz.geweckt();
        p->vor(5);
        p->arbeitsplatz.geweckt();

        p->vor(15);
        QCOMPARE(p->anlaesse(), QStringList{u"aufgewacht"_s});
        p->vor(5);

        QCOMPARE(p->anlaesse(), (QStringList{u"aufgewacht"_s, u"aufgewacht"_s}));
        QCOMPARE(p->uhr.offen(), 2);
    }

    // Waking in a row, as a laptop on its way does: the second finds the first one's sync running.
    void zweimalAufgewachtEinLauf()
    {
        ruhigBeginnen();
        p->arbeitsplatz.geweckt();
        p->arbeitsplatz.geweckt();

        p->vor(20);

        QCOMPARE(p->anlaesse(), QStringList{u"aufgewacht"_s});
    }

    // kalvaro was opened while only the agent still saved, and the sync that the window promised
    // never came.
    void geoeffnetWaehrendDerAgentSpeichert()
    {
        p->rekordboxLaeuft(false, 0, 1);
        p->starten(false);
        QCOMPARE(p->beschriftung(u"lblTitel"_s), u"rekordbox läuft"_s);
        p->vor(60);
        p->rekordboxZu();
        p->vor(539);
        QVERIFY(p->anlaesse().isEmpty());

        nurEinmalNachgeholt(1);
    }

    void nachherInEinemAelterenLauf_data()
    {
        QTest::addColumn<bool>("daneben");
        QTest::newRow("begun before rekordbox started") << false;
        QTest::newRow("begun while rekordbox ran") << true;
    }
    // The sync after rekordbox joined one that had begun before.
    void nachherInEinemAelterenLauf()
    {
        QFETCH(const bool, daneben);
        ruhigBeginnen();
        if (!daneben) {
            p->abgleich(Anlass::Hand);
            p->vor();
        }
        p->rekordboxOffen();
        p->vor(10);
        p->abgleich(Anlass::Hand);
        p->vor();
        p->rekordboxZu();
        p->vor(3); // joins
        p->netz.beantworten(gut);
        p->vor();
        p->netz.vergessen();

        nurEinmalNachgeholt(600);
    }

    // The server saw rekordbox open, and it has gone since without the watch ever seeing it.
    void rekordboxWarOffen()
    {
        ruhigBeginnen();
        p->abgleiche = {abgleichAntwort(u"rekordbox_offen"_s)};
        p->abgleich(Anlass::Hand);
        p->vor();
        p->netz.vergessen();

        nurEinmalNachgeholt(600);
    }

    // The sync after waking joined one from before the sleep.
    void aufgewachtInEinemAelterenLauf()
    {
        ruhigBeginnen();
        p->abgleich(Anlass::Hand);
        p->vor();
        p->arbeitsplatz.geweckt();
        p->vor(20); // joins
        p->netz.beantworten(gut);
        p->vor();
        QCOMPARE(p->anlaesse(), QStringList{u"hand"_s});
        p->netz.vergessen();

        nurEinmalNachgeholt(600);
    }

    // The agent saved for longer than 90 s: what it wrote after that was in no sync.
    void agentSpeichertLaenger()
    {
        ruhigBeginnen();
        p->abgleiche = {gut};
        p->rekordboxOffen();
        p->vor(3);
        p->rekordboxLaeuft(false, 0, 1);
        p->vor(96);
        QCOMPARE(p->anlaesse(), QStringList{u"nachher"_s});
        p->rekordboxZu();
        p->netz.vergessen();

        nurEinmalNachgeholt(600);
    }

    // One that began after the sleep will do, and one that began after rekordbox: no request more.
    void nichtsDoppelt()
    {
        ruhigBeginnen();
        p->abgleiche = {gut, gut};
        p->arbeitsplatz.geweckt();
        p->vor(10);
        p->abgleich(Anlass::Hand);
        p->vor(10);
        QCOMPARE(p->anlaesse(), (QStringList{u"hand"_s, u"aufgewacht"_s}));
        p->arbeitsplatz.geweckt();
        p->vor(10);
        p->abgleich(Anlass::Hand);
        p->vor(10); // joined, and young enough
        p->netz.beantworten(gut);
        p->vor(700);
        QCOMPARE(p->anlaesse(), (QStringList{u"hand"_s, u"aufgewacht"_s, u"hand"_s}));
        p->abgleiche = {gut};
        p->rekordboxOffen();
        p->vor(1200); // ticks that rekordbox holds back
        p->rekordboxZu();
        p->vor(3);
        QCOMPARE(p->anlaesse().last(), u"nachher"_s);
        p->netz.vergessen();

        p->vor(3600);

        QVERIFY(p->anlaesse().isEmpty());
    }

    // At rest the program waits for its two ticks and for nothing else.
    void ruheKostetNichts()
    {
        ruhigBeginnen();
        for (int i = 0; i < 100; ++i) {
            p->arbeitsplatz.geweckt();
        }
        p->abgleiche = QList<Transport::Ergebnis>(100, gut);
        p->vor(24 * 3600);

        QCOMPARE(p->uhr.offen(), 2);
        QCOMPARE(p->netz.haengend(), 0);
    }

private:
    static void laufzeilen()
    {
        QTest::addColumn<int>("haupt");
        QTest::addColumn<int>("agent");
        QTest::addColumn<QStringList>("erwartet"); // "x" for the reason under test
        QTest::newRow("nothing runs") << 0 << 0 << QStringList{u"x"_s};
        QTest::newRow("rekordbox runs") << 1 << 0 << QStringList();
        QTest::newRow("only its agent runs") << 0 << 1 << QStringList();
        QTest::newRow("both run") << 1 << 1 << QStringList();
    }

    // The catch-up comes within `frist` seconds, and then no more.
    void nurEinmalNachgeholt(double frist)
    {
        p->abgleiche = {gut};
        p->vor(frist);
        QCOMPARE(p->anlaesse(), QStringList{u"nachholen"_s});
        p->vor(3600);
        QCOMPARE(p->anlaesse(), QStringList{u"nachholen"_s});
    }

    // 15 s after a background start; the first sync came to `antwort`.
    void beginnen(const Transport::Ergebnis &antwort)
    {
        p->abgleiche = {antwort};
        p->starten(true);
        p->vor(15);
        p->netz.vergessen();
    }
    void ruhigBeginnen() { beginnen(gut); }
    void offlineBeginnen() { beginnen(offline); }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungNachholen)
#include "tst_steuerung_nachholen.moc"
