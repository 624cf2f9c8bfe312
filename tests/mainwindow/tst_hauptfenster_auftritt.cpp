#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

#include <QAction>
#include <QCloseEvent>
#include <QDialog>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

Q_DECLARE_METATYPE(std::function<void(kalvaro::Fensterwelt &)>)

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

    // Without a bar for the status item.
    void ohneLeisteVerschwindetNichts_data();
    void ohneLeisteVerschwindetNichts();
    void ohneLeisteZaehltNichtsHerunter();
    void ohneLeisteNimmtDasFensterSeinBlattMit();
    void ohneLeisteHaeltDasFensterDasEndeNichtAuf();
    void derSchreibtischHoltEsZurueck();
    void derSchreibtischIstSchnell();
    void einAugenblickIstKeineRueckkehr();
    void wasAbgelegtWarErscheintNeu();
    void dieLeisteKommtSpaeter();
    void dieLeisteGehtVerloren();

private:
    // What the desktop does when the user presses the window's close button.
    static void schliessknopf(const Fensterwelt &p);
    // The desktop makes the window that the user has chosen the active one.
    static void aktivieren(const Fensterwelt &p);

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

void TestHauptfensterAuftritt::schliessknopf(const Fensterwelt &p)
{
    QCloseEvent wunsch;
    QSpontaneKeyEvent::setSpontaneous(&wunsch);
    QCoreApplication::sendEvent(p.fenster->windowHandle(), &wunsch);
}

void TestHauptfensterAuftritt::aktivieren(const Fensterwelt &p)
{
    QWidget anderes;
    anderes.show();
    anderes.activateWindow();
    QTRY_VERIFY(anderes.isActiveWindow());
    p.fenster->activateWindow();
    QTRY_VERIFY(p.fenster->isActiveWindow());
}

void TestHauptfensterAuftritt::ohneLeisteVerschwindetNichts_data()
{
    QTest::addColumn<std::function<void(Fensterwelt &)>>("tat");
    const auto fall = [](const char *name, const std::function<void(Fensterwelt &)> &tat) {
        QTest::newRow(name) << tat;
    };
    fall("close button", [](Fensterwelt &p) { schliessknopf(p); });
    fall("Ctrl+W", [](Fensterwelt &p) { p.fenster->aktionen().schliessen->trigger(); });
    fall("Ctrl+H", [](Fensterwelt &p) { p.fenster->aktionen().ausblenden->trigger(); });
    fall("start of rekordbox", [](Fensterwelt &p) {
        p.knopf(u"knStart"_s)->click();
        Fensterwelt::ruhe();
        QCOMPARE(p.arbeitsplatz.starts.size(), 1);
    });
}

// On a desktop without a bar (GNOME) it was gone, and nothing told where to.
void TestHauptfensterAuftritt::ohneLeisteVerschwindetNichts()
{
    QFETCH(const std::function<void(Fensterwelt &)>, tat);
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    const QSignalSpy abgelegt(p.fenster.get(), &Hauptfenster::abgelegt);
    tat(p);
    QVERIFY(p.fenster->isVisible());
    QVERIFY(p.fenster->isMinimized());
    QVERIFY(!p.fenster->offen());
    QCOMPARE(abgelegt.size(), 1);
    QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Regulaer);
    QCOMPARE(p.beendenGewuenscht, 0);
    p.fenster->verstecken(); // again
    QCOMPARE(abgelegt.size(), 1);

    p.fenster->oeffnen(true);
    QVERIFY(p.fenster->offen());
    QVERIFY(!p.fenster->isMinimized());
}

// It is as put away as a hidden one.
void TestHauptfensterAuftritt::ohneLeisteZaehltNichtsHerunter()
{
    Fensterwelt p({.autostart = true});
    p.statusobjekt.leiste(false);
    p.abgeglichen();
    QVERIFY(!p.countdown().isEmpty());
    schliessknopf(p);
    QVERIFY(p.countdown().isEmpty());

    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    schliessknopf(p);
    p.beantworten(Fensterwelt::gut());
    Fensterwelt::ruhe();
    QVERIFY(p.countdown().isEmpty());
    p.uhr.vor(Sekunden(60));
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
}

void TestHauptfensterAuftritt::ohneLeisteNimmtDasFensterSeinBlattMit()
{
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    p.knopf(u"lnkEinstellungen"_s)->click();
    auto *const blatt = p.fenster->findChild<QDialog *>();
    QVERIFY(blatt != nullptr && blatt->isVisible());
    schliessknopf(p);
    QVERIFY(p.fenster->isMinimized());
    QVERIFY(!blatt->isVisible());
    p.fenster->oeffnen(true);
    QVERIFY(blatt->isVisible());
}

// Nobody is told then that the program runs on.
void TestHauptfensterAuftritt::ohneLeisteHaeltDasFensterDasEndeNichtAuf()
{
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    const QSignalSpy abgelegt(p.fenster.get(), &Hauptfenster::abgelegt);
    QVERIFY(p.fenster->close()); // as the application does for its end
    QCOMPARE(abgelegt.size(), 0);
    p.fenster->oeffnen(false);
    p.fenster->endgueltigSchliessen();
    schliessknopf(p);
    QVERIFY(!p.fenster->isVisible());
}

void TestHauptfensterAuftritt::derSchreibtischHoltEsZurueck()
{
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    schliessknopf(p);
    p.fenster->setWindowState(Qt::WindowNoState);
    aktivieren(p);
    p.uhr.vor(Sekunden(1));
    QVERIFY(p.fenster->offen());
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse(), QStringList({u"vorstart"_s, u"vorstart"_s}));
}

// So quick that it never was inactive.
void TestHauptfensterAuftritt::derSchreibtischIstSchnell()
{
    Fensterwelt p;
    p.abgeglichen();
    p.fenster->activateWindow();
    QTRY_VERIFY(p.fenster->isActiveWindow());
    p.statusobjekt.leiste(false);
    schliessknopf(p);
    p.fenster->setWindowState(Qt::WindowNoState);
    p.uhr.vor(Sekunden(1));
    QVERIFY(p.fenster->offen());
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse().size(), 2);
}

// As its sheet hides, a desktop may activate the window that is just being put away.
void TestHauptfensterAuftritt::einAugenblickIstKeineRueckkehr()
{
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    schliessknopf(p);
    aktivieren(p); // still minimised
    p.uhr.vor(Sekunden(1));
    QVERIFY(p.fenster->isMinimized());
    QVERIFY(!p.fenster->offen());

    p.fenster->setWindowState(Qt::WindowNoState); // Wayland tells nothing of minimising
    aktivieren(p);
    QWidget anderes;
    anderes.show();
    anderes.activateWindow();
    QTRY_VERIFY(!p.fenster->isActiveWindow());
    p.uhr.vor(Sekunden(1));
    QVERIFY(!p.fenster->offen());
    QCOMPARE(p.anlaesse().size(), 1);
}

// A second start from a terminal, without a token: under GNOME it stayed minimised.
void TestHauptfensterAuftritt::wasAbgelegtWarErscheintNeu()
{
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    schliessknopf(p);
    QWidget anderes;
    anderes.show();
    anderes.activateWindow();
    QTRY_VERIFY(!p.fenster->isActiveWindow());
    const QSignalSpy gewechselt(p.fenster->windowHandle(), &QWindow::visibleChanged);
    p.fenster->oeffnen(true);
    QCOMPARE(gewechselt.size(), 2);
    QVERIFY(p.fenster->isVisible());
    anderes.activateWindow();
    QTRY_VERIFY(!p.fenster->isActiveWindow());
    p.fenster->oeffnen(true); // it was not put away: it does not even blink
    QCOMPARE(gewechselt.size(), 2);
}

void TestHauptfensterAuftritt::dieLeisteKommtSpaeter()
{
    Fensterwelt p;
    p.abgeglichen();
    p.statusobjekt.leiste(false);
    schliessknopf(p);
    p.statusobjekt.leiste(true);
    QVERIFY(p.fenster->isMinimized());
    p.fenster->oeffnen(false);
    schliessknopf(p);
    QVERIFY(!p.fenster->isVisible());
    p.fenster->oeffnen(false);
    QVERIFY(p.fenster->offen());
}

void TestHauptfensterAuftritt::dieLeisteGehtVerloren()
{
    Fensterwelt p;
    p.fenster->oeffnen(false);
    p.fenster->auffindbarMachen(); // it can be seen
    QVERIFY(!p.fenster->isMinimized());
    schliessknopf(p);
    QVERIFY(!p.fenster->isVisible());
    p.statusobjekt.leiste(false);
    p.fenster->auffindbarMachen();
    QVERIFY(p.fenster->isVisible());
    QVERIFY(p.fenster->isMinimized());
    QVERIFY(!p.fenster->offen());
}

KALVARO_FENSTERTEST(TestHauptfensterAuftritt)
#include "tst_hauptfenster_auftritt.moc"
