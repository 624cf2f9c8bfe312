#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

#include <QDir>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The sync run and the display of its outcome.
class TestHauptfensterAbgleich final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { daten.leeren(); }

    void verbindetAmAnfang();
    void oeffnenMitAbgleich();
    void oeffnenOhneAbgleich();
    void oeffnenLiestDieInstallationen();
    void nurDerAgentLaeuft();
    void rekordboxLaeuft_data();
    void rekordboxLaeuft();
    void ueberschriftNachAnlass();
    void zweiterAbgleichWaehrendEinerLaeuft();
    void andereAbgleicheZeigtEsNicht();
    void fensterGehtMittendrin();
    void nachherImFenster();
    void nachherImVerborgenen();
    void ergebnisZeigtAlles();
    void pilleBleibtOhneBetrieb();
    void ohneStatistikBleibenDieKacheln();
    void updateNurMitBeidem_data();
    void updateNurMitBeidem();
    void updateFolgtDemSpaeteren();
    void zaehlerEndetMitDemErgebnis();

private:
    Datenordner &daten = Testumgebung::ordner();
};

void TestHauptfensterAbgleich::verbindetAmAnfang()
{
    const Fensterwelt p;
    QVERIFY(!p.art());
    QCOMPARE(p.titel(), u"Verbinde mit der Cloud …"_s);
    QCOMPARE(p.detail(), u"Einen Moment"_s);
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(!p.beschaeftigt());
    QVERIFY(p.arbeitsplatz.auftritte.isEmpty());
}

void TestHauptfensterAbgleich::oeffnenMitAbgleich()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    QVERIFY(p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte, {Arbeitsplatz::Auftritt::Regulaer});
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse(), {u"vorstart"_s});
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    QCOMPARE(p.detail(), u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
    QVERIFY(p.beschaeftigt());
    p.beantworten(Fensterwelt::gut());
    QVERIFY(!p.beschaeftigt());
    QVERIFY(p.standfragen().isEmpty());
}

void TestHauptfensterAbgleich::oeffnenOhneAbgleich()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    QVERIFY(p.fenster->isVisible());
    Fensterwelt::ruhe();
    QVERIFY(p.anlaesse().isEmpty());
    QCOMPARE(p.titel(), u"Verbinde mit der Cloud …"_s);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
}

void TestHauptfensterAbgleich::oeffnenLiestDieInstallationen()
{
    const Fensterwelt p({.versionen = {}});
    p.fenster->oeffnen(false);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox nicht gefunden"_s);
    QVERIFY(QDir().rename(Programmordner({u"6.8.5"_s}).buendel(u"6.8.5"_s),
                          p.programme.pfad() + u"/rekordbox.app"_s));
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox nicht gefunden"_s);
    p.fenster->oeffnen(false);
    Fensterwelt::ruhe();
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 6.8.5 starten"_s);
}

// Shows "rekordbox läuft" and does not sync, but the start button, which counts only "rekordbox",
// stays enabled.
void TestHauptfensterAbgleich::nurDerAgentLaeuft()
{
    Fensterwelt p;
    p.laeuft(0, 1);
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QVERIFY(p.anlaesse().isEmpty());
    QCOMPARE(p.art(), Art::Aus);
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(p.detail(), rekordboxLaeuftDetail);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
    QVERIFY(p.knopf(u"knStart"_s)->isEnabled());
}

void TestHauptfensterAbgleich::rekordboxLaeuft_data()
{
    QTest::addColumn<int>("haupt");
    QTest::addColumn<int>("agent");
    QTest::addColumn<QString>("knopf");
    QTest::newRow("rekordbox") << 1 << 0 << u"rekordbox läuft"_s;
    QTest::newRow("only its agent") << 0 << 1 << u"rekordbox 7.1.4 starten"_s;
    QTest::newRow("both, several times") << 2 << 3 << u"rekordbox läuft"_s;
}

// No request is made.
void TestHauptfensterAbgleich::rekordboxLaeuft()
{
    QFETCH(int, haupt);
    QFETCH(int, agent);
    Fensterwelt p;
    p.fenster->oeffnen(false);
    p.laeuft(haupt, agent);
    p.knopf(u"lnkAbgleich"_s)->click();
    Fensterwelt::ruhe();
    QVERIFY(p.anlaesse().isEmpty());
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(p.detail(), rekordboxLaeuftDetail);
    QTEST(p.knopf(u"knStart"_s)->text(), "knopf");
    QVERIFY(!p.beschaeftigt());
}
void TestHauptfensterAbgleich::ergebnisZeigtAlles()
{
    Fensterwelt p;
    p.abgeglichen();
    QCOMPARE(p.art(), Art::Gut);
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.detail(), u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s);
    QCOMPARE(p.text(u"zahlen0"_s), u"12.345"_s);
    QVERIFY(p.text(u"lblZeile1"_s).startsWith(u"Analysiert: 12.001 Titel   ·   "_s));
    QCOMPARE(p.text(u"lblZeile2"_s), u"Stand der Cloud: heute 18:05   ·   geprüft heute 18:07"_s);
    QVERIFY(p.teil(u"pille"_s)->isVisible());
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
}

// An outcome with an empty mode after one with "schatten" leaves the pill visible.
void TestHauptfensterAbgleich::pilleBleibtOhneBetrieb()
{
    Fensterwelt p;
    p.abgeglichen(Fensterwelt::gut({{u"betrieb"_s, u"schatten"_s}}));
    p.abgeglichen(Fensterwelt::gut({{u"betrieb"_s, u""_s}}));
    QVERIFY(p.teil(u"pille"_s)->isVisible());
    QCOMPARE(p.teil(u"pille"_s)->findChild<QLabel *>()->text(), u"Probebetrieb"_s);
}

void TestHauptfensterAbgleich::ohneStatistikBleibenDieKacheln()
{
    Fensterwelt p;
    p.abgeglichen();
    p.abgeglichen(Fensterwelt::offline());
    QCOMPARE(p.text(u"zahlen0"_s), u"12.345"_s);
    QCOMPARE(p.text(u"zahlen3"_s), u"123 GB"_s);
    QVERIFY(p.text(u"lblZeile1"_s).startsWith(u"Frei auf dem Mac: "_s));
    QCOMPARE(p.text(u"lblZeile2"_s),
             u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s);
}

void TestHauptfensterAbgleich::updateNurMitBeidem_data()
{
    QTest::addColumn<bool>("version");
    QTest::addColumn<bool>("adresse");
    QTest::newRow("neither") << false << false;
    QTest::newRow("only a version") << true << false;
    QTest::newRow("only an address") << false << true;
    QTest::newRow("both") << true << true;
}

void TestHauptfensterAbgleich::updateNurMitBeidem()
{
    QFETCH(bool, version);
    QFETCH(bool, adresse);
    Fensterwelt p;
    QJsonObject app;
    if (version) {
        app.insert(u"version"_s, u"1.10"_s);
    }
    if (adresse) {
        app.insert(u"url"_s, u"https://cloud/x"_s);
    }
    p.abgeglichen(Fensterwelt::gut({{u"app"_s, app}}));
    QCOMPARE(p.teil(u"karteUpdate"_s)->isVisible(), version && adresse);
}

// Two outcomes that both offer an update: the card is shown once, and its text follows the later
// outcome's version.
void TestHauptfensterAbgleich::updateFolgtDemSpaeteren()
{
    Fensterwelt p;
    p.abgeglichen();
    const int ohne = p.fenster->height();
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.10"_s)));
    const int mit = p.fenster->height();
    QVERIFY(mit > ohne);
    p.abgeglichen(Fensterwelt::gut(angebot(u"1.11"_s)));
    QCOMPARE(p.text(u"lblUpdate"_s), u"Neue Version 1.11 verfügbar"_s);
    QCOMPARE(p.fenster->height(), mit);
    p.abgeglichen(); // without an offer it stays
    QVERIFY(p.teil(u"karteUpdate"_s)->isVisible());
    p.knopf(u"knUpdate"_s)->click();
    QCOMPARE(p.arbeitsplatz.adressen, {QUrl(u"https://kalvaro.example/1.11"_s)});
}

void TestHauptfensterAbgleich::zaehlerEndetMitDemErgebnis()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    p.uhr.vor(Sekunden(2));
    QVERIFY(p.detail().endsWith(u"Cloud  (2 s)"_s));
    p.beantworten(Fensterwelt::gut());
    const QString ergebnis = p.detail();
    p.uhr.vor(Sekunden(5));
    QCOMPARE(p.detail(), ergebnis);
    QCOMPARE(p.uhr.offen(), 0);
}
// A sync asked for by hand shows the same as the one before a start; the one after rekordbox says
// what it does.
void TestHauptfensterAbgleich::ueberschriftNachAnlass()
{
    Fensterwelt p;
    p.fenster->oeffnen(false);
    p.knopf(u"lnkAbgleich"_s)->click();
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    QVERIFY(!p.art());
    p.beantworten(Fensterwelt::gut());
    p.rekordboxGestartet();
    p.rekordboxBeendet();
    QCOMPARE(p.titel(), u"Änderungen werden übertragen …"_s);
    QVERIFY(!p.art());
    QCOMPARE(p.detail(), u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
}

// The run in progress is not asked for again, and its outcome is shown once.
void TestHauptfensterAbgleich::zweiterAbgleichWaehrendEinerLaeuft()
{
    Fensterwelt p;
    int gezeigt = 0;
    connect(p.fenster.get(), &Hauptfenster::angezeigt, this, [&] { ++gezeigt; });
    p.fenster->oeffnen(true);
    p.knopf(u"lnkAbgleich"_s)->click();
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse().size(), 1);
    p.beantworten(Fensterwelt::gut());
    QCOMPARE(gezeigt, 1);
}

// Those of the tray and the timers are not the window's; asked for one meanwhile, it joins.
void TestHauptfensterAbgleich::andereAbgleicheZeigtEsNicht()
{
    Fensterwelt p;
    p.abgeglichen();
    p.ablauf.abgleicher.abgleich(Anlass::Nachholen);
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(!p.beschaeftigt());
    p.knopf(u"lnkAbgleich"_s)->click();
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    p.beantworten(Fensterwelt::antwort(u"verschoben"_s));
    QCOMPARE(p.titel(), u"Abgleich verschoben"_s);
    QCOMPARE(p.anlaesse(), QStringList({u"vorstart"_s, u"nachholen"_s}));
}

void TestHauptfensterAbgleich::fensterGehtMittendrin()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    p.fenster.reset();
    QCOMPARE(p.uhr.offen(), 1); // the limit of the request
    p.beantworten(Fensterwelt::gut());
    QCOMPARE(p.uhr.offen(), 0);
    QVERIFY(!p.ablauf.abgleicher.laeuftGerade());
}

void TestHauptfensterAbgleich::nachherImFenster()
{
    Fensterwelt p;
    p.abgeglichen();
    p.rekordboxGestartet();
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(p.detail(), rekordboxLaeuftDetail);
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    p.rekordboxBeendet();
    QVERIFY(!p.art());
    QCOMPARE(p.detail(), u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
    p.laeuft(1, 0);
    p.fenster->ergebnisAnzeigen({.art = Art::Gut, .titel = u"Bibliothek ist abgeglichen"_s});
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    Fensterwelt::ruhe();
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox läuft"_s);
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    QCOMPARE(p.uhr.offen(), 0);
}

void TestHauptfensterAbgleich::nachherImVerborgenen()
{
    Fensterwelt p;
    p.abgeglichen();
    p.fenster->verstecken();
    p.rekordboxGestartet();
    p.rekordboxBeendet();
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.uhr.offen(), 0);
}

KALVARO_FENSTERTEST(TestHauptfensterAbgleich)
#include "tst_hauptfenster_abgleich.moc"
