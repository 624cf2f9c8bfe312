#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

QString zeile(int sekunden)
{
    return u"rekordbox startet in %1 s  ·"_s.arg(sekunden);
}

} // namespace

// The countdown in its window: what begins it and what ends it.
class TestHauptfensterCountdown final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { daten.leeren(); }

    void autostart_data();
    void autostart();
    void autostartEntscheidetInDieserReihenfolge();
    void countdownZaehltUndStartet();
    void countdownEndet_data();
    void countdownEndet();
    void hakenStartetNichtsUndWirdGesichert();
    void keinerImVerborgenen();

private:
    Datenordner &daten = Testumgebung::ordner();
};

void TestHauptfensterCountdown::autostart_data()
{
    QTest::addColumn<bool>("erlaubt");
    QTest::addColumn<bool>("gewollt");
    QTest::addColumn<bool>("startbar");
    QTest::addColumn<int>("agent");
    QTest::addColumn<bool>("installiert");
    QTest::addColumn<bool>("zaehlt");
    QTest::newRow("all conditions hold") << true << true << true << 0 << true << true;
    QTest::newRow("not the opening sync") << false << true << true << 0 << true << false;
    QTest::newRow("not wanted") << true << false << true << 0 << true << false;
    QTest::newRow("the outcome forbids it") << true << true << false << 0 << true << false;
    QTest::newRow("the agent runs") << true << true << true << 1 << true << false;
    QTest::newRow("nothing installed") << true << true << true << 0 << false << false;
}

void TestHauptfensterCountdown::autostart()
{
    QFETCH(bool, erlaubt);
    QFETCH(bool, gewollt);
    QFETCH(bool, startbar);
    QFETCH(int, agent);
    QFETCH(bool, installiert);
    QFETCH(bool, zaehlt);
    Fensterwelt p(
        {.versionen = installiert ? QStringList(u"7.1.4"_s) : QStringList(), .autostart = gewollt});
    p.fenster->oeffnen(erlaubt);
    if (!erlaubt) {
        p.knopf(u"lnkAbgleich"_s)->click(); // never after "Jetzt abgleichen"
        Fensterwelt::ruhe();
        QCOMPARE(p.anlaesse(), {u"hand"_s});
    }
    p.laeuft(0, agent);
    p.beantworten(Fensterwelt::antwort(startbar ? u"aktuell"_s : u"fehler"_s));
    QCOMPARE(p.countdown(), zaehlt ? zeile(5) : QString());
}

// The process table is asked only where the rest allows it.
void TestHauptfensterCountdown::autostartEntscheidetInDieserReihenfolge()
{
    for (const bool gewollt : {false, true}) {
        Fensterwelt p({.autostart = gewollt});
        p.fenster->oeffnen(true);
        Fensterwelt::ruhe();
        p.prozesse.gefragt.clear();
        p.beantworten(Fensterwelt::gut());
        QCOMPARE(p.prozesse.gefragt.count(u"rekordboxAgent"_s), gewollt ? 1 : 0);
    }
}

void TestHauptfensterCountdown::countdownZaehltUndStartet()
{
    Fensterwelt p({.autostart = true});
    p.abgeglichen();
    for (const int sekunden : {5, 4, 3, 2, 1}) {
        QCOMPARE(p.countdown(), zeile(sekunden));
        p.uhr.vor(Sekunden(1));
    }
    Fensterwelt::ruhe();
    QCOMPARE(p.standfragen(), {u"/api/stand"_s});
    QCOMPARE(p.arbeitsplatz.starts, {p.buendel(u"7.1.4"_s)});
    QVERIFY(!p.fenster->isVisible());
}

void TestHauptfensterCountdown::countdownEndet_data()
{
    QTest::addColumn<std::function<void(Fensterwelt &)>>("tat");
    using Tat = std::function<void(Fensterwelt &)>;
    const auto klick = [](const char *name) {
        return Tat([=](Fensterwelt &p) {
            QTest::mouseClick(p.knopf(QString::fromLatin1(name)), Qt::LeftButton, {}, {8, 8});
        });
    };
    QTest::newRow("\"Abbrechen\"") << klick("knCountdown");
    QTest::newRow("unticking the check box") << klick("cbAuto");
    QTest::newRow("a sync") << klick("lnkAbgleich");
    QTest::newRow("a start") << klick("knStart");
    QTest::newRow("opening the settings") << klick("lnkEinstellungen");
    QTest::newRow("Escape") << Tat(
        [](Fensterwelt &p) { QTest::keyClick(p.fenster.get(), Qt::Key_Escape); });
    QTest::newRow("closing the window") << Tat([](Fensterwelt &p) { p.fenster->close(); });
    QTest::newRow("hiding the window") << Tat([](Fensterwelt &p) { p.fenster->verstecken(); });
    QTest::newRow("rekordbox runs") << Tat([](Fensterwelt &p) { p.rekordboxGestartet(); });
    QTest::newRow("opening while rekordbox runs") << Tat([](Fensterwelt &p) {
        p.laeuft(1, 1);
        p.fenster->oeffnen(true);
    });
}

void TestHauptfensterCountdown::countdownEndet()
{
    QFETCH(std::function<void(Fensterwelt &)>, tat);
    Fensterwelt p({.autostart = true});
    p.stand = std::nullopt; // a last look hangs
    p.abgeglichen();
    p.uhr.vor(Sekunden(2));
    QCOMPARE(p.countdown(), zeile(3));
    tat(p);
    QVERIFY(p.countdown().isEmpty());
    QVERIFY(p.teil(u"knCountdown"_s)->isHidden());
    QVERIFY(p.text(u"lblCountdown"_s).isEmpty());
    p.uhr.vor(Sekunden(7));
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QVERIFY(p.countdown().isEmpty());
}

// Unticking cancels it; ticking later does not restart it.
void TestHauptfensterCountdown::hakenStartetNichtsUndWirdGesichert()
{
    Fensterwelt p({.autostart = true});
    p.ablauf.einst.speichern();
    p.abgeglichen();
    QAbstractButton *const haken = p.knopf(u"cbAuto"_s);
    QVERIFY(haken->isChecked());
    QTest::mouseClick(haken, Qt::LeftButton, {}, QPoint(8, 8));
    QVERIFY(!p.ablauf.einst.autostart);
    QVERIFY(!Einstellungen().autostart);
    QTest::mouseClick(haken, Qt::LeftButton, {}, QPoint(8, 8));
    QVERIFY(p.ablauf.einst.autostart);
    QVERIFY(Einstellungen().autostart);
    QVERIFY(p.countdown().isEmpty());
    p.uhr.vor(Sekunden(10));
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
}

// Whoever puts the window away while it syncs does not want rekordbox to start.
void TestHauptfensterCountdown::keinerImVerborgenen()
{
    Fensterwelt p({.autostart = true});
    p.fenster->oeffnen(true);
    p.fenster->close();
    p.beantworten(Fensterwelt::gut());
    QVERIFY(p.countdown().isEmpty());
    p.uhr.vor(Sekunden(10));
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    // The outcome is there when the window comes back.
    p.fenster->oeffnen(false);
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(p.countdown().isEmpty());
}

KALVARO_FENSTERTEST(TestHauptfensterCountdown)
#include "tst_hauptfenster_countdown.moc"
