#include "mainwindow/fensterprobe.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString letzterBlick = u"Letzter Blick in die Cloud …"_s;

QMessageBox *alarm()
{
    const auto fenster = QApplication::topLevelWidgets();
    for (QWidget *eines : fenster) {
        if (auto *const box = qobject_cast<QMessageBox *>(eines); box && box->isVisible()) {
            return box;
        }
    }
    return nullptr;
}

} // namespace

// The last look and the launch.
class TstHauptfensterStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { daten.leeren(); }
    void cleanup() { delete alarm(); }

    void gewaehlteVersion_data();
    void gewaehlteVersion();
    void letzterBlickSperrt();
    void startOhneNoetigenAbgleich();
    void startOhneAntwort();
    void hinweisWirdMitgeteilt_data();
    void hinweisWirdMitgeteilt();
    void noetigerAbgleich_data();
    void noetigerAbgleich();
    void ohneInstallationNichts();
    void waehrendBeschaeftigtNichts();
    void laeuftSchon();
    void nurDerAgentLaeuft();
    void startenNachAbgleich();
    void startenNachAbgleichBeschaeftigt();
    void startFehlschlag_data();
    void startFehlschlag();
    void ohneTreiberWirdAbgelegt();

private:
    static QString protokollzeile() { return u"rekordbox 7.1.4 gestartet"_s; }

    // What the window looks like once rekordbox is on its way.
    static void gestartet(const Fensterprobe &p)
    {
        QCOMPARE(p.arbeitsplatz.starts, {p.programme.buendel(u"7.1.4"_s)});
        verborgen(p);
    }
    static void verborgen(const Fensterprobe &p)
    {
        QCOMPARE(p.art(), u"aus"_s);
        QCOMPARE(p.titel(), u"rekordbox läuft"_s);
        QCOMPARE(p.detail(), rekordboxLaeuftDetail);
        QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox läuft"_s);
        QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
        QVERIFY(!p.fenster->isVisible());
        QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Zubehoer);
        QVERIFY(p.countdown().isEmpty());
    }

    Datenordner daten;
};

void TstHauptfensterStart::gewaehlteVersion_data()
{
    QTest::addColumn<QString>("wunsch");
    QTest::addColumn<QString>("version");
    QTest::newRow("no wish: the newest") << QString() << u"7.1.4"_s;
    QTest::newRow("the chosen one") << u"6.8.5"_s << u"6.8.5"_s;
    QTest::newRow("a version that is not installed: the first one is started, and the button "
                  "names that one")
        << u"5.0.0"_s << u"7.1.4"_s;
}

void TstHauptfensterStart::gewaehlteVersion()
{
    QFETCH(QString, wunsch);
    QFETCH(QString, version);
    Fensterprobe p({.versionen = {u"6.8.5"_s, u"7.1.4"_s}});
    p.einst.version = wunsch;
    p.abgeglichen(Fensterprobe::gut());
    QCOMPARE(p.fenster->gewaehlt()->version, version);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox "_s + version + u" starten"_s);
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts, QStringList(p.programme.buendel(version)));
    QCOMPARE(daten.protokollzeilen().last(), u"rekordbox "_s + version + u" gestartet"_s);
}

void TstHauptfensterStart::letzterBlickSperrt()
{
    Fensterprobe p;
    p.stand = std::nullopt;
    p.abgeglichen(Fensterprobe::gut());
    QTest::mouseClick(p.knopf(u"knStart"_s), Qt::LeftButton);
    QCOMPARE(p.art(), u"laden"_s);
    QCOMPARE(p.titel(), letzterBlick);
    QCOMPARE(p.detail(), u"kalvaro prüft, ob seit dem Abgleich etwas dazukam"_s);
    QVERIFY(p.fenster->beschaeftigt());
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    QVERIFY(!p.knopf(u"lnkAbgleich"_s)->isEnabled());
    int fertig = 0;
    p.fenster->abgleichen(u"hand"_s, false, [&] { ++fertig; });
    QCOMPARE(fertig, 1);
    QCOMPARE(p.treiber->anlaesse.size(), 1);
    QCOMPARE(p.titel(), letzterBlick);
}

void TstHauptfensterStart::startOhneNoetigenAbgleich()
{
    Fensterprobe p;
    QStringList titel;
    connect(p.fenster.get(), &Hauptfenster::angezeigt, this, [&] { titel.append(p.titel()); });
    p.abgeglichen(Fensterprobe::gut());
    p.knopf(u"knStart"_s)->click();
    QTRY_VERIFY(!p.fenster->isVisible());
    gestartet(p);
    // The outcome was shown again in between.
    QCOMPARE(titel, QStringList(2, u"Bibliothek ist abgeglichen"_s));
    QVERIFY(!p.fenster->beschaeftigt());
    QVERIFY(p.knopf(u"lnkAbgleich"_s)->isEnabled());
    QVERIFY(p.treiber->mitteilungen.isEmpty());
    QCOMPARE(daten.protokollzeilen(),
             QStringList({u"Startprüfung: Stand passt"_s, protokollzeile()}));
}

// rekordbox starts with the library as it is.
void TstHauptfensterStart::startOhneAntwort()
{
    Fensterprobe p;
    p.stand = std::nullopt;
    p.abgeglichen(Fensterprobe::gut());
    p.knopf(u"knStart"_s)->click();
    p.uhr.vor(Sekunden(7.9));
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    p.uhr.vor(Sekunden(0.2));
    Fensterprobe::ruhe();
    gestartet(p);
    QVERIFY(p.treiber->mitteilungen.isEmpty());
}

void TstHauptfensterStart::hinweisWirdMitgeteilt_data()
{
    QTest::addColumn<bool>("treiberDa");
    QTest::newRow("with a driver") << true;
    QTest::newRow("the driver is gone") << false;
}

void TstHauptfensterStart::hinweisWirdMitgeteilt()
{
    QFETCH(bool, treiberDa);
    Fensterprobe p;
    p.stand = R"({"andere":[{"name":"Studio","rekordbox_offen":true}]})";
    p.abgeglichen(Fensterprobe::gut());
    p.knopf(u"knStart"_s)->click();
    if (!treiberDa) {
        p.treiber.reset();
    }
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    if (treiberDa) {
        QCOMPARE(p.treiber->mitteilungen,
                 {(Treiberdouble::Mitteilung{
                     u"rekordbox startet"_s,
                     u"Auf „Studio“ ist rekordbox noch offen – Änderungen von dort fehlen hier "
                     "noch."_s,
                     std::nullopt})});
    } else {
        QVERIFY(p.fenster->isMinimized());
    }
}

void TstHauptfensterStart::noetigerAbgleich_data()
{
    QTest::addColumn<bool>("startbar");
    QTest::addColumn<int>("haupt");
    QTest::addColumn<int>("agent");
    QTest::addColumn<bool>("startet");
    QTest::newRow("the outcome allows it") << true << 0 << 0 << true;
    QTest::newRow("the outcome forbids it") << false << 0 << 0 << false;
    QTest::newRow("rekordbox runs by then") << true << 1 << 0 << false;
    QTest::newRow("its agent runs by then") << true << 0 << 1 << false;
}

void TstHauptfensterStart::noetigerAbgleich()
{
    QFETCH(bool, startbar);
    QFETCH(int, haupt);
    QFETCH(int, agent);
    QFETCH(bool, startet);
    Fensterprobe p({.autostart = true});
    p.stand = R"({"ausstehend":true})";
    p.abgeglichen(Fensterprobe::gut());
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.treiber->anlaesse, QStringList(2, u"vorstart"_s));
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    p.laeuft(haupt, agent);
    Bewertung b = Fensterprobe::gut();
    b.startbar = startbar;
    p.treiber->beantworten(b);
    QVERIFY(p.countdown().isEmpty()); // this one never counts down
    if (startet) {
        gestartet(p);
    } else {
        QVERIFY(p.arbeitsplatz.starts.isEmpty());
        QVERIFY(p.fenster->isVisible());
        QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    }
}

void TstHauptfensterStart::ohneInstallationNichts()
{
    Fensterprobe p({.versionen = {}});
    p.abgeglichen(Fensterprobe::gut());
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox nicht gefunden"_s);
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    QTest::keyClick(p.fenster.get(), Qt::Key_Return);
    p.fenster->startenNachAbgleich();
    p.treiber->beantworten(Fensterprobe::gut());
    Fensterprobe::ruhe();
    QVERIFY(p.anfragen().isEmpty());
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QVERIFY(p.fenster->isVisible());
}

void TstHauptfensterStart::waehrendBeschaeftigtNichts()
{
    Fensterprobe p;
    p.fenster->oeffnen(true);
    QTest::keyClick(p.fenster.get(), Qt::Key_Return);
    Fensterprobe::ruhe();
    QVERIFY(p.anfragen().isEmpty());
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
}

// Skips the server check, launches nothing, and only switches the window to "rekordbox läuft" and
// hides it.
void TstHauptfensterStart::laeuftSchon()
{
    Fensterprobe p({.autostart = true});
    p.abgeglichen(Fensterprobe::gut());
    p.laeuft(1, 0);
    p.uhr.vor(Sekunden(5));
    QVERIFY(p.anfragen().isEmpty());
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QVERIFY(daten.protokollzeilen().isEmpty());
    verborgen(p);
}

// Does the server check and a launch.
void TstHauptfensterStart::nurDerAgentLaeuft()
{
    Fensterprobe p;
    p.abgeglichen(Fensterprobe::gut());
    p.laeuft(0, 1);
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QCOMPARE(p.anfragen(), {u"/api/stand"_s});
    gestartet(p);
}

void TstHauptfensterStart::startenNachAbgleich()
{
    Fensterprobe p;
    p.fenster->oeffnen(false);
    p.fenster->startenNachAbgleich();
    QCOMPARE(p.treiber->anlaesse, {u"vorstart"_s});
    p.treiber->beantworten(Fensterprobe::gut());
    QVERIFY(p.anfragen().isEmpty()); // without a last look
    gestartet(p);
    QCOMPARE(daten.protokollzeilen(), {protokollzeile()});
}

void TstHauptfensterStart::startenNachAbgleichBeschaeftigt()
{
    Fensterprobe p;
    p.fenster->oeffnen(true);
    p.fenster->startenNachAbgleich();
    QCOMPARE(p.treiber->anlaesse.size(), 1);
    p.treiber->beantworten(Fensterprobe::gut());
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
}

void TstHauptfensterStart::startFehlschlag_data()
{
    QTest::addColumn<bool>("mitTreiber");
    QTest::newRow("the window is hidden by then") << true;
    QTest::newRow("the window is minimised by then") << false;
}

// The window has already switched, and is not switched back.
void TstHauptfensterStart::startFehlschlag()
{
    QFETCH(bool, mitTreiber);
    Fensterprobe p({.mitTreiber = mitTreiber});
    p.arbeitsplatz.fehler = u"<b>Keine</b> Berechtigung &amp; mehr"_s;
    p.fenster->oeffnen(false);
    p.knopf(u"knStart"_s)->click();
    QTRY_VERIFY(alarm() != nullptr);
    QCOMPARE(alarm()->text(), u"rekordbox ließ sich nicht starten"_s);
    QCOMPARE(alarm()->informativeText(), u"<b>Keine</b> Berechtigung &amp; mehr"_s);
    QCOMPARE(alarm()->textFormat(), Qt::PlainText);
    QVERIFY(alarm()->isModal());
    QVERIFY(alarm()->parentWidget() == nullptr);
    QCOMPARE(alarm()->buttons().size(), 1);
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(daten.protokollzeilen().last(), protokollzeile());
}

void TstHauptfensterStart::ohneTreiberWirdAbgelegt()
{
    Fensterprobe p({.mitTreiber = false});
    p.fenster->oeffnen(false);
    p.arbeitsplatz.auftritte.clear();
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QVERIFY(p.fenster->isMinimized());
    QVERIFY(p.fenster->isVisible());
    QVERIFY(p.arbeitsplatz.auftritte.isEmpty());
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
}

QTEST_MAIN(TstHauptfensterStart)
#include "tst_hauptfenster_start.moc"
