#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Opening, hiding and closing.
class TestHauptfensterAuftritt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schliessenVerbirgt();
    void schliessenHaeltDieSitzungNichtAuf();
    void endgueltigSchliesst();
    void alleinEndetDasProgramm();
    void inDerMenueleisteEndetNichts();
    void verstecken();
    void wiederOeffnen();
    void abgelegtesKommtWieder();
    void ergebnisImVerborgenen();

private:
    Datenordner &daten = Testumgebung::ordner();
};

// Hides the window and removes the dock icon; the application keeps running.
void TestHauptfensterAuftritt::schliessenVerbirgt()
{
    Fensterwelt p({.autostart = true});
    p.abgeglichen();
    QVERIFY(!p.countdown().isEmpty());
    p.fenster->close();
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Zubehoer);
    QCOMPARE(p.beendenGewuenscht, 0);
}

void TestHauptfensterAuftritt::schliessenHaeltDieSitzungNichtAuf()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    QVERIFY(p.fenster->close()); // accepted
}

// Once the program is ending, the same click closes the window.
void TestHauptfensterAuftritt::endgueltigSchliesst()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    p.fenster->endgueltigSchliessen();
    QVERIFY(p.fenster->close());
    QVERIFY(!p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Regulaer);
}

// Closing the window quits the application.
void TestHauptfensterAuftritt::alleinEndetDasProgramm()
{
    const Fensterwelt p({.verbleib = Verbleib::Allein});
    p.fenster->oeffnen(false);
    QVERIFY(beendetDasProgramm([&] { p.fenster->close(); }));
}

void TestHauptfensterAuftritt::inDerMenueleisteEndetNichts()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    QVERIFY(!beendetDasProgramm([&] { p.fenster->close(); }));
    p.fenster->oeffnen(false);
    p.fenster->endgueltigSchliessen();
    QVERIFY(!beendetDasProgramm([&] { p.fenster->close(); })); // others do that
}

void TestHauptfensterAuftritt::verstecken()
{
    Fensterwelt p({.autostart = true});
    p.abgeglichen();
    p.fenster->verstecken();
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(p.arbeitsplatz.auftritte,
             (QList{Arbeitsplatz::Auftritt::Regulaer, Arbeitsplatz::Auftritt::Zubehoer}));
}

void TestHauptfensterAuftritt::wiederOeffnen()
{
    Fensterwelt p;
    p.abgeglichen();
    p.fenster->close();
    p.fenster->oeffnen(true);
    QVERIFY(p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Regulaer);
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse().size(), 2);
    p.beantworten(Fensterwelt::gut());
    // It stays up to date while it is there, but starts no second sync while one runs.
    p.fenster->oeffnen(true);
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse().size(), 3);
}

void TestHauptfensterAuftritt::abgelegtesKommtWieder()
{
    const Fensterwelt p;
    p.fenster->oeffnen(false);
    p.fenster->showMinimized();
    p.fenster->oeffnen(false);
    QVERIFY(!p.fenster->isMinimized());
    QVERIFY(p.fenster->isVisible());
}

void TestHauptfensterAuftritt::ergebnisImVerborgenen()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    p.uhr.vor(Sekunden(3));
    p.fenster->close();
    p.uhr.vor(Sekunden(4));
    p.fenster->oeffnen(false);
    QVERIFY(p.detail().endsWith(u"(7 s)"_s)); // right at once
    p.fenster->close();
    p.beantworten(Fensterwelt::gut());
    QVERIFY(!p.fenster->isVisible()); // an outcome brings no window up
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.uhr.offen(), 0);
}

KALVARO_FENSTERTEST(TestHauptfensterAuftritt)
#include "tst_hauptfenster_auftritt.moc"
