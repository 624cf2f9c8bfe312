#include "mainwindow/fensterprobe.h"

#include <QDir>
#include <QTest>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// The sync run and the display of its outcome.
class TstHauptfensterAbgleich : public QObject
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
    void ueberschriftNachAnlass_data();
    void ueberschriftNachAnlass();
    void zweiterAbgleichRuftFertigSofort();
    void fertigKommtNachDemErgebnis();
    void ergebnisZeigtAlles();
    void pilleBleibtOhneBetrieb();
    void ohneStatistikBleibenDieKacheln();
    void updateNurMitBeidem_data();
    void updateNurMitBeidem();
    void updateFolgtDemSpaeteren();
    void zaehlerEndetMitDemErgebnis();
    void ohneTreiberFragtDasFensterSelbst();
    void treiberSchonWeg();
    void treiberGehtMittendrin();
    void fensterGehtMittendrin();
    void ergebnisVonAussen();

private:
    Datenordner daten;
};

void TstHauptfensterAbgleich::verbindetAmAnfang()
{
    const Fensterprobe p;
    QCOMPARE(p.art(), u"laden"_s);
    QCOMPARE(p.titel(), u"Verbinde mit der Cloud …"_s);
    QCOMPARE(p.detail(), u"Einen Moment"_s);
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(!p.fenster->beschaeftigt());
    QVERIFY(p.arbeitsplatz.auftritte.isEmpty());
}

void TstHauptfensterAbgleich::oeffnenMitAbgleich()
{
    const Fensterprobe p;
    p.fenster->oeffnen(true);
    QVERIFY(p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte, {Arbeitsplatz::Auftritt::Regulaer});
    QCOMPARE(p.treiber->anlaesse, {u"vorstart"_s});
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    QCOMPARE(p.detail(), u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
    QVERIFY(p.fenster->beschaeftigt());
    QVERIFY(!p.knopf(u"lnkAbgleich"_s)->isEnabled());
    p.treiber->beantworten(Fensterprobe::gut());
    QVERIFY(!p.fenster->beschaeftigt());
    QVERIFY(p.knopf(u"lnkAbgleich"_s)->isEnabled());
    QCOMPARE(p.anfragen(), QStringList()); // only through the driver
}

void TstHauptfensterAbgleich::oeffnenOhneAbgleich()
{
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    QVERIFY(p.fenster->isVisible());
    QVERIFY(p.treiber->anlaesse.isEmpty());
    QCOMPARE(p.titel(), u"Verbinde mit der Cloud …"_s);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
}

void TstHauptfensterAbgleich::oeffnenLiestDieInstallationen()
{
    const Fensterprobe p({.versionen = {}});
    QVERIFY(!p.fenster->gewaehlt());
    p.fenster->oeffnen(false);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox nicht gefunden"_s);
    QVERIFY(QDir().rename(Programmordner({u"6.8.5"_s}).buendel(u"6.8.5"_s),
                          p.programme.pfad() + u"/rekordbox.app"_s));
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox nicht gefunden"_s);
    p.fenster->oeffnen(false);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 6.8.5 starten"_s);
}

// Shows "rekordbox läuft" and does not sync, but the start button, which counts only "rekordbox",
// stays enabled.
void TstHauptfensterAbgleich::nurDerAgentLaeuft()
{
    Fensterprobe p;
    p.laeuft(0, 1);
    p.fenster->oeffnen(true);
    QVERIFY(p.treiber->anlaesse.isEmpty());
    QCOMPARE(p.art(), u"aus"_s);
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(p.detail(), rekordboxLaeuftDetail);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
    QVERIFY(p.knopf(u"knStart"_s)->isEnabled());
}

void TstHauptfensterAbgleich::rekordboxLaeuft_data()
{
    QTest::addColumn<int>("haupt");
    QTest::addColumn<int>("agent");
    QTest::addColumn<QString>("knopf");
    QTest::newRow("rekordbox") << 1 << 0 << u"rekordbox läuft"_s;
    QTest::newRow("only its agent") << 0 << 1 << u"rekordbox 7.1.4 starten"_s;
    QTest::newRow("both, several times") << 2 << 3 << u"rekordbox läuft"_s;
}

// No request is made.
void TstHauptfensterAbgleich::rekordboxLaeuft()
{
    QFETCH(int, haupt);
    QFETCH(int, agent);
    Fensterprobe p;
    p.fenster->oeffnen(false);
    p.laeuft(haupt, agent);
    int fertig = 0;
    p.fenster->abgleichen(u"hand"_s, false, [&] { ++fertig; });
    QCOMPARE(fertig, 1);
    QVERIFY(p.treiber->anlaesse.isEmpty());
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(p.detail(), rekordboxLaeuftDetail);
    QTEST(p.knopf(u"knStart"_s)->text(), "knopf");
    QVERIFY(!p.fenster->beschaeftigt());
    QVERIFY(p.knopf(u"lnkAbgleich"_s)->isEnabled());
}

void TstHauptfensterAbgleich::ueberschriftNachAnlass_data()
{
    QTest::addColumn<QString>("anlass");
    QTest::addColumn<QString>("titel");
    const QString sonst = u"Bibliothek wird abgeglichen …"_s;
    QTest::newRow("after rekordbox") << u"nachher"_s << u"Änderungen werden übertragen …"_s;
    QTest::newRow("by hand") << u"hand"_s << sonst;
    QTest::newRow("before a start") << u"vorstart"_s << sonst;
}

void TstHauptfensterAbgleich::ueberschriftNachAnlass()
{
    QFETCH(QString, anlass);
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    p.fenster->abgleichen(anlass, false, {});
    QTEST(p.titel(), "titel");
    QCOMPARE(p.art(), u"laden"_s);
    QCOMPARE(p.treiber->anlaesse, {anlass});
}

// The first run's completion still arrives and is shown once.
void TstHauptfensterAbgleich::zweiterAbgleichRuftFertigSofort()
{
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    int erster = 0;
    int zweiter = 0;
    int gezeigt = 0;
    connect(p.fenster.get(), &Hauptfenster::angezeigt, this, [&] { ++gezeigt; });
    p.fenster->abgleichen(u"hand"_s, false, [&] { ++erster; });
    p.fenster->abgleichen(u"hand"_s, false, [&] { ++zweiter; });
    QCOMPARE(zweiter, 1);
    QCOMPARE(erster, 0);
    QCOMPARE(p.treiber->anlaesse.size(), 1);
    p.treiber->beantworten(Fensterprobe::gut());
    QCOMPARE(erster, 1);
    QCOMPARE(zweiter, 1);
    QCOMPARE(gezeigt, 1);
}

void TstHauptfensterAbgleich::fertigKommtNachDemErgebnis()
{
    const Fensterprobe p({.autostart = true});
    p.fenster->oeffnen(false);
    QString titel;
    QString countdown;
    bool beschaeftigt = true;
    p.fenster->abgleichen(u"vorstart"_s, true, [&] {
        titel = p.titel();
        countdown = p.countdown();
        beschaeftigt = p.fenster->beschaeftigt();
    });
    p.treiber->beantworten(Fensterprobe::gut());
    QCOMPARE(titel, u"Bibliothek ist abgeglichen"_s);
    QVERIFY(!beschaeftigt);
    QVERIFY(!countdown.isEmpty()); // decided before
}

void TstHauptfensterAbgleich::ergebnisZeigtAlles()
{
    Fensterprobe p;
    p.abgeglichen(Fensterprobe::gut());
    QCOMPARE(p.art(), u"gut"_s);
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.detail(), u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s);
    QCOMPARE(p.text(u"zahlen0"_s), u"12.345"_s);
    QVERIFY(p.text(u"lblZeile1"_s).startsWith(u"Analysiert: 12.001 Titel   ·   "_s));
    QCOMPARE(p.text(u"lblZeile2"_s), u"Stand der Cloud: heute 18:05   ·   geprüft heute 18:07"_s);
    QVERIFY(p.teil(u"pille"_s)->isVisible());
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox 7.1.4 starten"_s);
}

// An outcome with an empty mode after one with "schatten" leaves the pill visible.
void TstHauptfensterAbgleich::pilleBleibtOhneBetrieb()
{
    Fensterprobe p;
    Bewertung b = Fensterprobe::gut();
    b.betrieb = u"schatten"_s;
    p.abgeglichen(b);
    b.betrieb.clear();
    p.abgeglichen(b);
    QVERIFY(p.teil(u"pille"_s)->isVisible());
    QCOMPARE(p.teil(u"pille"_s)->findChild<QLabel *>()->text(), u"Probebetrieb"_s);
}

void TstHauptfensterAbgleich::ohneStatistikBleibenDieKacheln()
{
    Fensterprobe p;
    p.abgeglichen(Fensterprobe::gut());
    p.abgeglichen({.art = u"warn"_s, .titel = u"Nicht abgeglichen"_s, .offline = true});
    QCOMPARE(p.text(u"zahlen0"_s), u"12.345"_s);
    QCOMPARE(p.text(u"zahlen3"_s), u"123 GB"_s);
    QVERIFY(p.text(u"lblZeile1"_s).startsWith(u"Frei auf dem Mac: "_s));
    QCOMPARE(p.text(u"lblZeile2"_s),
             u"Keine Verbindung zur Cloud – Zahlen folgen beim nächsten Abgleich."_s);
}

void TstHauptfensterAbgleich::updateNurMitBeidem_data()
{
    QTest::addColumn<bool>("version");
    QTest::addColumn<bool>("adresse");
    QTest::newRow("neither") << false << false;
    QTest::newRow("only a version") << true << false;
    QTest::newRow("only an address") << false << true;
    QTest::newRow("both") << true << true;
}

void TstHauptfensterAbgleich::updateNurMitBeidem()
{
    QFETCH(bool, version);
    QFETCH(bool, adresse);
    Fensterprobe p;
    Bewertung b = Fensterprobe::gut();
    b.neueVersion = version ? std::optional(u"1.10"_s) : std::nullopt;
    b.updateAdresse = adresse ? std::optional(u"https://cloud/x"_s) : std::nullopt;
    p.abgeglichen(b);
    QCOMPARE(p.teil(u"karteUpdate"_s)->isVisible(), version && adresse);
}

// Two outcomes that both offer an update: the card is shown once, and its text follows the later
// outcome's version.
void TstHauptfensterAbgleich::updateFolgtDemSpaeteren()
{
    Fensterprobe p;
    Bewertung b = Fensterprobe::gut();
    p.abgeglichen(b);
    const int ohne = p.fenster->height();
    b.neueVersion = u"1.10"_s;
    b.updateAdresse = u"https://cloud/a"_s;
    p.abgeglichen(b);
    const int mit = p.fenster->height();
    QVERIFY(mit > ohne);
    b.neueVersion = u"1.11"_s;
    b.updateAdresse = u"https://cloud/b"_s;
    p.abgeglichen(b);
    QCOMPARE(p.text(u"lblUpdate"_s), u"Neue Version 1.11 verfügbar"_s);
    QCOMPARE(p.fenster->height(), mit);
    p.abgeglichen(Fensterprobe::gut()); // without an offer it stays
    QVERIFY(p.teil(u"karteUpdate"_s)->isVisible());
    p.knopf(u"knUpdate"_s)->click();
    QCOMPARE(p.arbeitsplatz.adressen, {QUrl(u"https://cloud/b"_s)});
}

void TstHauptfensterAbgleich::zaehlerEndetMitDemErgebnis()
{
    Fensterprobe p;
    p.fenster->oeffnen(true);
    p.uhr.vor(Sekunden(2));
    QVERIFY(p.detail().endsWith(u"Cloud  (2 s)"_s));
    p.treiber->beantworten(Fensterprobe::gut());
    const QString ergebnis = p.detail();
    p.uhr.vor(Sekunden(5));
    QCOMPARE(p.detail(), ergebnis);
    QCOMPARE(p.uhr.offen(), 0);
}

void TstHauptfensterAbgleich::ohneTreiberFragtDasFensterSelbst()
{
    Fensterprobe p({.mitTreiber = false});
    p.antwort = R"({"ergebnis":{"zustand":"aktuell"}})";
    int fertig = 0;
    p.fenster->abgleichen(u"hand"_s, false, [&] { ++fertig; });
    QCOMPARE(fertig, 0);
    QTRY_COMPARE(fertig, 1);
    QCOMPARE(p.anfragen(), {u"/api/abgleich"_s});
    QVERIFY(p.netz.anfragen().last().body->contains(R"("anlass":"hand")"));
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
}

void TstHauptfensterAbgleich::treiberSchonWeg()
{
    Fensterprobe p;
    p.antwort = R"({"ergebnis":{"zustand":"aktuell"}})";
    p.treiber.reset();
    p.fenster->oeffnen(true);
    QTRY_COMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.anfragen(), {u"/api/abgleich"_s});
}

// The window once waited for ever.
void TstHauptfensterAbgleich::treiberGehtMittendrin()
{
    Fensterprobe p;
    p.antwort = R"({"ergebnis":{"zustand":"aktuell"}})";
    int fertig = 0;
    p.fenster->abgleichen(u"hand"_s, false, [&] { ++fertig; });
    p.treiber.reset();
    QTRY_COMPARE(fertig, 1);
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(!p.fenster->beschaeftigt());

    // One that goes after it has answered changes nothing.
    Fensterprobe q;
    q.abgeglichen(Fensterprobe::gut());
    q.treiber.reset();
    Fensterprobe::ruhe();
    QCOMPARE(q.anfragen(), QStringList());
}

void TstHauptfensterAbgleich::fensterGehtMittendrin()
{
    Fensterprobe p;
    bool fertig = false;
    p.fenster->oeffnen(false);
    p.fenster->abgleichen(u"hand"_s, false, [&] { fertig = true; });
    p.fenster.reset();
    QCOMPARE(p.uhr.offen(), 0);
    p.treiber->beantworten(Fensterprobe::gut());
    QVERIFY(!fertig);

    Fensterprobe q({.mitTreiber = false});
    q.fenster->abgleichen(u"hand"_s, false, [&] { fertig = true; });
    Fensterprobe::ruhe();
    QCOMPARE(q.netz.haengend(), 1);
    q.fenster.reset();
    QCOMPARE(q.netz.haengend(), 0); // the request ends with its owner
    QVERIFY(!fertig);
}

// The driver shows what its own runs came to.
void TstHauptfensterAbgleich::ergebnisVonAussen()
{
    Fensterprobe p;
    p.fenster->oeffnen(false);
    p.laeuft(1, 0);
    p.fenster->ergebnisAnzeigen(Fensterprobe::gut());
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox läuft"_s);
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    p.fenster->rekordboxLaeuftAnzeigen();
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    p.fenster->ladenAnzeigen(u"Änderungen werden übertragen …"_s);
    QCOMPARE(p.art(), u"laden"_s);
    QCOMPARE(p.detail(), u"kalvaro vergleicht diesen Mac mit der Cloud"_s);
}

QTEST_MAIN(TstHauptfensterAbgleich)
#include "tst_hauptfenster_abgleich.moc"
