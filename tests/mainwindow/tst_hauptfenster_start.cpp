#include "mainwindow/fensterwelt.h"
#include "testlauf.h"

#include <QApplication>
#include <QMessageBox>

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
class TestHauptfensterStart final : public QObject
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
    void hinweisWirdMitgeteilt();
    void noetigerAbgleich_data();
    void noetigerAbgleich();
    void ohneInstallationNichts();
    void waehrendBeschaeftigtNichts();
    void laeuftSchon();
    void nurDerAgentLaeuft();
    void startAusDemMenueMitAbgleich();
    void startAusDemMenueWaehrendEigenerAbgleichLaeuft();
    void zweiStartsZugleich();
    void fremderAbgleich_data();
    void fremderAbgleich();
    void abgleichBeginntWaehrendDerPruefung();
    void startFehlschlag_data();
    void startFehlschlag();
    void startFehlschlagSperrtDasFensterDasWiederkommt();
    void hinterDemHinweisZaehltNichtsHerunter();
    void alleinWirdAbgelegt();

private:
    static QString protokollzeile() { return u"rekordbox 7.1.4 gestartet"_s; }

    // What the window looks like once rekordbox is on its way.
    static void gestartet(const Fensterwelt &p)
    {
        QCOMPARE(p.arbeitsplatz.starts, {p.buendel(u"7.1.4"_s)});
        verborgen(p);
    }
    static void verborgen(const Fensterwelt &p)
    {
        QCOMPARE(p.art(), Art::Aus);
        QCOMPARE(p.titel(), u"rekordbox läuft"_s);
        QCOMPARE(p.detail(), rekordboxLaeuftDetail);
        QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox läuft"_s);
        QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
        QVERIFY(!p.fenster->isVisible());
        QCOMPARE(p.arbeitsplatz.auftritte.last(), Arbeitsplatz::Auftritt::Zubehoer);
        QVERIFY(p.countdown().isEmpty());
    }

    Datenordner &daten = Testumgebung::ordner();
};

void TestHauptfensterStart::gewaehlteVersion_data()
{
    QTest::addColumn<QString>("wunsch");
    QTest::addColumn<QString>("version");
    QTest::newRow("no wish: the newest") << QString() << u"7.1.4"_s;
    QTest::newRow("the chosen one") << u"6.8.5"_s << u"6.8.5"_s;
    QTest::newRow("a version that is not installed: the first one is started, and the button "
                  "names that one")
        << u"5.0.0"_s << u"7.1.4"_s;
}

void TestHauptfensterStart::gewaehlteVersion()
{
    QFETCH(QString, wunsch);
    QFETCH(QString, version);
    Fensterwelt p({.versionen = {u"6.8.5"_s, u"7.1.4"_s}});
    p.ablauf.einst.version = wunsch;
    p.abgeglichen();
    QCOMPARE(p.ablauf.starter.gewaehlt()->version, version);
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox "_s + version + u" starten"_s);
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts, QStringList(p.buendel(version)));
    QCOMPARE(daten.protokollzeilen().last(), u"rekordbox "_s + version + u" gestartet"_s);
}

void TestHauptfensterStart::letzterBlickSperrt()
{
    Fensterwelt p;
    p.stand = std::nullopt;
    p.abgeglichen();
    QTest::mouseClick(p.knopf(u"knStart"_s), Qt::LeftButton);
    Fensterwelt::ruhe();
    QVERIFY(!p.art());
    QCOMPARE(p.titel(), letzterBlick);
    QCOMPARE(p.detail(), u"kalvaro prüft, ob seit dem Abgleich etwas dazukam"_s);
    QVERIFY(p.beschaeftigt());
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    p.fenster->oeffnen(true);
    Fensterwelt::ruhe();
    QCOMPARE(p.anlaesse().size(), 1);
    QCOMPARE(p.titel(), letzterBlick);
}

void TestHauptfensterStart::startOhneNoetigenAbgleich()
{
    Fensterwelt p;
    QStringList titel;
    connect(p.fenster.get(), &Hauptfenster::angezeigt, this, [&] { titel.append(p.titel()); });
    p.abgeglichen();
    p.knopf(u"knStart"_s)->click();
    QTRY_VERIFY(!p.fenster->isVisible());
    gestartet(p);
    // The outcome was shown again in between.
    QCOMPARE(titel, QStringList({u"Bibliothek ist abgeglichen"_s, u"Bibliothek ist abgeglichen"_s,
                                 u"rekordbox läuft"_s}));
    QVERIFY(!p.beschaeftigt());
    QVERIFY(p.hinweise.isEmpty());
    QCOMPARE(daten.protokollzeilen(),
             QStringList({u"Startprüfung: Stand passt"_s, protokollzeile()}));
}

// rekordbox starts with the library as it is.
void TestHauptfensterStart::startOhneAntwort()
{
    Fensterwelt p;
    p.stand = std::nullopt;
    p.abgeglichen();
    p.knopf(u"knStart"_s)->click();
    p.uhr.vor(Sekunden(7.9));
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    p.uhr.vor(Sekunden(0.2));
    Fensterwelt::ruhe();
    gestartet(p);
    QVERIFY(p.hinweise.isEmpty());
}

void TestHauptfensterStart::hinweisWirdMitgeteilt()
{
    Fensterwelt p;
    p.stand = R"({"andere":[{"name":"Studio","rekordbox_offen":true}]})";
    p.abgeglichen();
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QCOMPARE(p.hinweise,
             QStringList(u"Auf „Studio“ ist rekordbox noch offen – Änderungen von dort fehlen "
                         "hier noch."_s));
}

void TestHauptfensterStart::noetigerAbgleich_data()
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

void TestHauptfensterStart::noetigerAbgleich()
{
    QFETCH(bool, startbar);
    QFETCH(int, haupt);
    QFETCH(int, agent);
    QFETCH(bool, startet);
    Fensterwelt p({.autostart = true});
    p.stand = R"({"ausstehend":true})";
    p.abgeglichen();
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.anlaesse(), QStringList(2, u"vorstart"_s));
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    p.laeuft(haupt, agent);
    p.beantworten(startbar ? Fensterwelt::gut() : Fensterwelt::antwort(u"fehler"_s));
    QVERIFY(p.countdown().isEmpty()); // this one never counts down
    if (startet) {
        gestartet(p);
    } else {
        QVERIFY(p.arbeitsplatz.starts.isEmpty());
        QVERIFY(p.fenster->isVisible());
        QCOMPARE(p.titel(), startbar ? u"Bibliothek ist abgeglichen"_s : u"Abgleich gestört"_s);
    }
}

void TestHauptfensterStart::ohneInstallationNichts()
{
    Fensterwelt p({.versionen = {}});
    p.abgeglichen();
    QCOMPARE(p.knopf(u"knStart"_s)->text(), u"rekordbox nicht gefunden"_s);
    QVERIFY(!p.knopf(u"knStart"_s)->isEnabled());
    QTest::keyClick(p.fenster.get(), Qt::Key_Return);
    p.ablauf.starter.starten(Rekordboxstarter::Herkunft::Menue);
    Fensterwelt::ruhe();
    QVERIFY(p.standfragen().isEmpty());
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QVERIFY(p.fenster->isVisible());
}

void TestHauptfensterStart::waehrendBeschaeftigtNichts()
{
    Fensterwelt p;
    p.fenster->oeffnen(true);
    QTest::keyClick(p.fenster.get(), Qt::Key_Return);
    Fensterwelt::ruhe();
    QVERIFY(p.standfragen().isEmpty());
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
}

// Skips the server check, launches nothing, and only switches the window to "rekordbox läuft" and
// hides it.
void TestHauptfensterStart::laeuftSchon()
{
    Fensterwelt p({.autostart = true});
    p.abgeglichen();
    p.laeuft(1, 0);
    p.uhr.vor(Sekunden(5));
    QVERIFY(p.standfragen().isEmpty());
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QVERIFY(daten.protokollzeilen().isEmpty());
    verborgen(p);
}

// Does the server check and a launch.
void TestHauptfensterStart::nurDerAgentLaeuft()
{
    Fensterwelt p;
    p.abgeglichen();
    p.laeuft(0, 1);
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QCOMPARE(p.standfragen(), {u"/api/stand"_s});
    gestartet(p);
}

// A start from the menu comes into the window as soon as a sync is involved.
void TestHauptfensterStart::startAusDemMenueMitAbgleich()
{
    Fensterwelt p;
    p.stand = R"({"ausstehend":true})";
    connect(&p.ablauf.starter, &Rekordboxstarter::fensterNoetig, p.fenster.get(),
            [&p] { p.fenster->oeffnen(false); });
    p.ablauf.starter.starten(Rekordboxstarter::Herkunft::Menue);
    QVERIFY(!p.fenster->isVisible());
    Fensterwelt::ruhe();
    QVERIFY(p.fenster->isVisible());
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    QVERIFY(p.beschaeftigt());
    QCOMPARE(p.anlaesse(), {u"vorstart"_s});
    p.beantworten(Fensterwelt::gut());
    QCOMPARE(p.standfragen().size(), 1); // no second look
    gestartet(p);
}

// A run of the window's own is in progress: nothing starts after it.
void TestHauptfensterStart::startAusDemMenueWaehrendEigenerAbgleichLaeuft()
{
    Fensterwelt p;
    p.stand = R"({"ausstehend":true})";
    p.fenster->oeffnen(true);
    p.beantworten(Fensterwelt::gut());
    p.fenster->oeffnen(true);
    p.ablauf.starter.starten(Rekordboxstarter::Herkunft::Menue);
    Fensterwelt::ruhe();
    QCOMPARE(p.standfragen().size(), 1);
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s); // not the outcome before
    p.beantworten(Fensterwelt::gut());
    QCOMPARE(p.anlaesse().size(), 2);
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QVERIFY(!p.beschaeftigt());
}

// The button was pressed and the menu chosen at once: two rekordbox were started.
void TestHauptfensterStart::zweiStartsZugleich()
{
    for (const bool menueZuerst : {false, true}) {
        Fensterwelt p;
        p.stand = std::nullopt;
        p.abgeglichen();
        if (menueZuerst) {
            p.ablauf.starter.starten(Rekordboxstarter::Herkunft::Menue);
            Fensterwelt::ruhe();
            QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s); // it has no face ...
        }
        p.knopf(u"knStart"_s)->click();
        Fensterwelt::ruhe();
        QCOMPARE(p.titel(), letzterBlick); // ... until the window takes it over
        QVERIFY(p.beschaeftigt());
        p.ablauf.starter.starten(Rekordboxstarter::Herkunft::Menue);
        p.knopf(u"knStart"_s)->click();
        Fensterwelt::ruhe();
        QCOMPARE(p.standfragen().size(), 1);
        p.uhr.vor(Sekunden(8));
        Fensterwelt::ruhe();
        gestartet(p);
    }
}

void TestHauptfensterStart::fremderAbgleich_data()
{
    QTest::addColumn<QString>("zustand");
    QTest::addColumn<bool>("startet");
    QTest::newRow("in step") << u"aktuell"_s << true;
    QTest::newRow("deferred") << u"verschoben"_s << true;
    QTest::newRow("failed") << u"fehler"_s << false;
    QTest::newRow("the cloud is busy") << u"laeuft_schon"_s << false;
}

// The tray, a timer or the wake had begun a sync: rekordbox was started into the middle of it.
void TestHauptfensterStart::fremderAbgleich()
{
    QFETCH(QString, zustand);
    QFETCH(bool, startet);
    Fensterwelt p;
    p.abgeglichen();
    p.ablauf.abgleicher.abgleich(Anlass::Nachholen);
    p.knopf(u"knStart"_s)->click();
    Fensterwelt::ruhe();
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    QVERIFY(p.beschaeftigt());
    QVERIFY(p.standfragen().isEmpty());
    p.beantworten(Fensterwelt::antwort(zustand));
    QCOMPARE(p.anlaesse(), QStringList({u"vorstart"_s, u"nachholen"_s}));
    QCOMPARE(p.standfragen().size(), startet ? 1 : 0);
    if (startet) {
        gestartet(p);
    } else {
        QVERIFY(p.arbeitsplatz.starts.isEmpty());
        QVERIFY(p.fenster->isVisible());
        QCOMPARE(p.art(), zustand == u"fehler" ? Art::Krit : Art::Warn);
        QVERIFY(!p.beschaeftigt());
        QVERIFY(p.knopf(u"knStart"_s)->isEnabled());
    }
}

// It began while the last look was under way.
void TestHauptfensterStart::abgleichBeginntWaehrendDerPruefung()
{
    Fensterwelt p;
    p.stand = std::nullopt;
    p.abgeglichen();
    p.knopf(u"knStart"_s)->click();
    Fensterwelt::ruhe();
    p.ablauf.abgleicher.abgleich(Anlass::Nachholen);
    Fensterwelt::ruhe();
    p.netz.beantworten(Scripttransport::antwort(200, "{}"));
    Fensterwelt::ruhe();
    QVERIFY(p.arbeitsplatz.starts.isEmpty());
    QCOMPARE(p.titel(), u"Bibliothek wird abgeglichen …"_s);
    p.stand = "{}";
    p.beantworten(Fensterwelt::gut());
    gestartet(p);
}

void TestHauptfensterStart::startFehlschlag_data()
{
    QTest::addColumn<Verbleib>("verbleib");
    QTest::newRow("the window is hidden by then") << Verbleib::Menueleiste;
    QTest::newRow("the window is minimised by then") << Verbleib::Allein;
}

// The window has already switched, and is not switched back.
void TestHauptfensterStart::startFehlschlag()
{
    QFETCH(Verbleib, verbleib);
    Fensterwelt p({.verbleib = verbleib});
    p.arbeitsplatz.fehler = u"<b>Keine</b> Berechtigung &amp; mehr"_s;
    p.fenster->oeffnen(false);
    p.knopf(u"knStart"_s)->click();
    QTRY_VERIFY(alarm() != nullptr);
    QCOMPARE(alarm()->text(), u"rekordbox ließ sich nicht starten"_s);
    QCOMPARE(alarm()->informativeText(), u"<b>Keine</b> Berechtigung &amp; mehr"_s);
    QCOMPARE(alarm()->textFormat(), Qt::PlainText);
    QVERIFY(alarm()->isModal());
    QCOMPARE(alarm()->parentWidget(), p.fenster.get());
    QCOMPARE(alarm()->buttons().size(), 1);
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
    QCOMPARE(daten.protokollzeilen().last(), protokollzeile());
    QVERIFY(!p.fenster->isMinimized()); // the alert would have gone with it
}

// It could not be cancelled there.
void TestHauptfensterStart::hinterDemHinweisZaehltNichtsHerunter()
{
    Fensterwelt p({.autostart = true});
    p.arbeitsplatz.fehler = u"Grund."_s;
    p.fenster->oeffnen(false);
    p.knopf(u"knStart"_s)->click();
    QTRY_VERIFY(alarm() != nullptr);
    p.abgeglichen();
    QCOMPARE(p.titel(), u"Bibliothek ist abgeglichen"_s);
    QVERIFY(p.countdown().isEmpty());
    alarm()->accept();
    QTRY_VERIFY(alarm() == nullptr);
    p.abgeglichen();
    QVERIFY(!p.countdown().isEmpty());
}

// The window was hidden when the alert came.
void TestHauptfensterStart::startFehlschlagSperrtDasFensterDasWiederkommt()
{
    Fensterwelt p;
    p.arbeitsplatz.fehler = u"Grund."_s;
    p.fenster->oeffnen(false);
    p.knopf(u"knStart"_s)->click();
    QTRY_VERIFY(alarm() != nullptr);
    QVERIFY(!p.fenster->isVisible());
    const bool vorher = p.ablauf.einst.autostart;
    const auto haken = [&] {
        auto *const cbAuto = p.teil(u"cbAuto"_s);
        const QPoint ort = cbAuto->mapTo(p.fenster.get(), QPoint(8, 10));
        QTest::mouseClick(p.fenster->windowHandle(), Qt::LeftButton, {}, ort);
        return p.ablauf.einst.autostart;
    };
    for (int i = 0; i < 2; ++i) { // hidden again, and back
        p.fenster->oeffnen(false);
        QVERIFY(QTest::qWaitForWindowExposed(p.fenster.get()));
        QVERIFY(alarm() != nullptr);
        QCOMPARE(alarm()->windowModality(), Qt::WindowModal);
        QCOMPARE(alarm()->windowHandle()->transientParent(), p.fenster->windowHandle());
        QCOMPARE(QApplication::activeModalWidget(), alarm());
        QCOMPARE(haken(), vorher);
        p.fenster->verstecken();
        QVERIFY(alarm() != nullptr);
    }
    p.fenster->oeffnen(false);
    alarm()->accept();
    QTRY_VERIFY(alarm() == nullptr);
    QVERIFY(haken() != vorher);
}

void TestHauptfensterStart::alleinWirdAbgelegt()
{
    Fensterwelt p({.verbleib = Verbleib::Allein});
    p.fenster->oeffnen(false);
    p.arbeitsplatz.auftritte.clear();
    p.knopf(u"knStart"_s)->click();
    QTRY_COMPARE(p.arbeitsplatz.starts.size(), 1);
    QVERIFY(p.fenster->isMinimized());
    QVERIFY(p.fenster->isVisible());
    QVERIFY(p.arbeitsplatz.auftritte.isEmpty());
    QCOMPARE(p.titel(), u"rekordbox läuft"_s);
}

KALVARO_FENSTERTEST(TestHauptfensterStart)
#include "tst_hauptfenster_start.moc"
