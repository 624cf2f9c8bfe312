#include "mainwindow/fensterprobe.h"

#include <QTest>

using namespace kalvaro;
using namespace Qt::StringLiterals;

// Opening, hiding and closing.
class TstHauptfensterAuftritt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schliessenVerbirgt();
    void schliessenHaeltDieSitzungNichtAuf();
    void endgueltigSchliesst();
    void ohneTreiberEndetDasProgramm();
    void treiberWegEndetDasProgramm();
    void mitTreiberEndetNichts();
    void verstecken();
    void wiederOeffnen();
    void abgelegtesKommtWieder();
    void ergebnisImVerborgenen();

private:
    Datenordner daten;
};

// Hides the window and removes the dock icon; the application keeps running.
void TstHauptfensterAuftritt::schliessenVerbirgt()
{
    Fensterprobe p({.autostart = true});
    p.abgeglichen(Fensterprobe::gut());
    QVERIFY(!p.countdown().isEmpty());
    p.fenster->close();
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Zubehoer);
    QCOMPARE(p.treiber->beendet, 0);
}

void TstHauptfensterAuftritt::schliessenHaeltDieSitzungNichtAuf()
{
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    QVERIFY(p.fenster->close()); // accepted
}

// After the driver has said that the program ends, the same click closes the window.
void TstHauptfensterAuftritt::endgueltigSchliesst()
{
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    p.fenster->endgueltigSchliessen();
    QVERIFY(p.fenster->close());
    QVERIFY(!p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Regulaer);
}

// Closing the window quits the application.
void TstHauptfensterAuftritt::ohneTreiberEndetDasProgramm()
{
    const Fensterprobe p({.mitTreiber = false});
    p.fenster->oeffnen(false);
    QVERIFY(beendetDasProgramm([&] { p.fenster->close(); }));
}

void TstHauptfensterAuftritt::treiberWegEndetDasProgramm()
{
    Fensterprobe p;
    p.fenster->oeffnen(false);
    p.treiber.reset();
    QVERIFY(beendetDasProgramm([&] { p.fenster->close(); }));
}

void TstHauptfensterAuftritt::mitTreiberEndetNichts()
{
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    QVERIFY(!beendetDasProgramm([&] { p.fenster->close(); }));
    p.fenster->oeffnen(false);
    p.fenster->endgueltigSchliessen();
    QVERIFY(!beendetDasProgramm([&] { p.fenster->close(); })); // the driver does that
}

void TstHauptfensterAuftritt::verstecken()
{
    Fensterprobe p({.autostart = true});
    p.abgeglichen(Fensterprobe::gut());
    p.fenster->verstecken();
    QVERIFY(!p.fenster->isVisible());
    QVERIFY(p.countdown().isEmpty());
    QCOMPARE(p.arbeitsplatz.auftritte,
             (QList{Arbeitsplatz::Auftritt::Regulaer, Arbeitsplatz::Auftritt::Zubehoer}));
}

void TstHauptfensterAuftritt::wiederOeffnen()
{
    Fensterprobe p;
    p.abgeglichen(Fensterprobe::gut());
    p.fenster->close();
    p.fenster->oeffnen(true);
    QVERIFY(p.fenster->isVisible());
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Regulaer);
    QCOMPARE(p.treiber->anlaesse.size(), 2);
    p.treiber->beantworten(Fensterprobe::gut());
    // It stays up to date while it is there, but starts no second sync while one runs.
    p.fenster->oeffnen(true);
    p.fenster->oeffnen(true);
    QCOMPARE(p.treiber->anlaesse.size(), 3);
}

void TstHauptfensterAuftritt::abgelegtesKommtWieder()
{
    const Fensterprobe p;
    p.fenster->oeffnen(false);
    p.fenster->showMinimized();
    p.fenster->oeffnen(false);
    QVERIFY(!p.fenster->isMinimized());
    QVERIFY(p.fenster->isVisible());
}

void TstHauptfensterAuftritt::ergebnisImVerborgenen()
{
    Fensterprobe p;
    p.fenster->oeffnen(true);
    p.uhr.vor(Sekunden(3));
    p.fenster->close();
    p.uhr.vor(Sekunden(4));
    p.fenster->oeffnen(false);
    QVERIFY(p.detail().endsWith(u"(7 s)"_s)); // right at once
    p.fenster->close();
    p.treiber->beantworten(Fensterprobe::gut());
    QVERIFY(!p.fenster->isVisible()); // an outcome brings no window up
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QCOMPARE(p.uhr.offen(), 0);
}

QTEST_MAIN(TstHauptfensterAuftritt)
#include "tst_hauptfenster_auftritt.moc"
