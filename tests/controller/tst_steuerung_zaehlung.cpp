// The whole program while processes are being counted: the answers come late, and meanwhile much
// can happen.

#include "steuerungswelt.h"
#include "testlauf.h"
#include "ui/knoepfe.h"

#include <QAbstractButton>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto fehler = abgleichAntwort(u"fehler"_s);
const auto passt = jsonAntwort({{u"ausstehend"_s, false}});
const auto ausstehend = jsonAntwort({{u"ausstehend"_s, true}});

const QString rekordboxLaeuft = u"rekordbox läuft"_s;
const QString startknopf = u"rekordbox 7.1.4 starten"_s;

} // namespace

class TestSteuerungZaehlung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        p = std::make_unique<Steuerungswelt>();
        p->installieren(u"7.1.4"_s);
    }
    void cleanup() { p.reset(); }

    // With 5,000 processes pgrep took longer than its 2 s, and a sync began beside rekordbox.
    void langsamesPgrepLaesstKeinenAbgleichBeginnen_data()
    {
        QTest::addColumn<std::function<void(Steuerungswelt &)>>("tat");
        using Tat = std::function<void(Steuerungswelt &)>;
        QTest::newRow("opening") << Tat([](Steuerungswelt &w) { w.steuerung->zeigen(true); });
        QTest::newRow("\"Jetzt abgleichen\" of the window") << Tat([](Steuerungswelt &w) {
            w.steuerung->zeigen(false);
            w.vor();
            w.steuerung->fenster()->findChild<QAbstractButton *>(u"lnkAbgleich"_s)->click();
        });
        QTest::newRow("login") << Tat([](Steuerungswelt &w) { w.vor(15); });
        QTest::newRow("wake") << Tat([](Steuerungswelt &w) {
            w.arbeitsplatz.geweckt();
            w.vor(20);
        });
        QTest::newRow("catch-up") << Tat([](Steuerungswelt &w) {
            w.ablauf->abgleicher.schulden();
            w.vor(600);
        });
    }
    void langsamesPgrepLaesstKeinenAbgleichBeginnen()
    {
        QFETCH(const std::function<void(Steuerungswelt &)>, tat);
        p->rekordboxLaeuft(false, 0, 1);
        p->starten();
        p->prozesse.zoegert = true;
        tat(*p);
        QVERIFY(p->anlaesse().isEmpty());
        antworten();
        QVERIFY(p->anlaesse().isEmpty());
        QVERIFY(p->ablauf->abgleicher.geschuldet());
        if (p->steuerung->fenster() != nullptr) {
            QCOMPARE(p->beschriftung(u"lblTitel"_s), rekordboxLaeuft);
            QVERIFY(!abgleichlinkBeschaeftigt());
        }
    }

    void zweimalOeffnenIstEinAbgleich()
    {
        p->starten();
        p->prozesse.zoegert = true;
        p->steuerung->zeigen(true);
        p->vor();
        QVERIFY(abgleichlinkBeschaeftigt());
        p->steuerung->zeigen(true);
        knopf(u"knStart"_s)->click(); // under way already
        antworten();
        p->netz.beantworten(gut);
        antworten();
        QCOMPARE(p->anlaesse(), {u"vorstart"_s});
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
        QVERIFY(p->wege().filter(u"stand"_s).isEmpty());
    }

    // From the menu nobody asks first; whether it was enough is known later, even after its end.
    void abgleichVonHandWartetNicht()
    {
        p->starten();
        p->prozesse.zoegert = true;
        p->rekordboxLaeuft(false, 0, 1);
        p->zeile(u"Jetzt abgleichen"_s)->trigger();
        p->vor();
        QCOMPARE(p->anlaesse(), {u"hand"_s});
        p->netz.beantworten(gut);
        p->vor();
        QVERIFY(!p->ablauf->abgleicher.geschuldet());
        antworten();
        QVERIFY(p->ablauf->abgleicher.geschuldet());
    }

    // What is said of a run that is long over says nothing of the one after it.
    void antwortZumVorigenAbgleichZaehltNicht()
    {
        p->starten();
        p->prozesse.zoegert = true;
        p->rekordboxLaeuft(false, 0, 1);
        p->abgleich(Anlass::Hand);
        p->vor();
        p->netz.beantworten(gut);
        p->vor();
        p->rekordboxZu();
        p->abgleich(Anlass::Hand);
        p->vor();
        antworten();
        p->netz.beantworten(gut);
        p->vor();
        QVERIFY(!p->ablauf->abgleicher.geschuldet());
    }

    void startknopfBleibtBisZurAntwort()
    {
        p->starten();
        p->steuerung->zeigen(false);
        p->vor();
        QCOMPARE(knopf(u"knStart"_s)->text(), startknopf);
        p->prozesse.zoegert = true;
        p->rekordboxLaeuft(false, 1, 1);
        p->steuerung->zeigen(false);
        p->vor();
        QCOMPARE(knopf(u"knStart"_s)->text(), startknopf);
        QVERIFY(knopf(u"knStart"_s)->isEnabled());
        antworten();
        QCOMPARE(knopf(u"knStart"_s)->text(), rekordboxLaeuft);
        QVERIFY(!knopf(u"knStart"_s)->isEnabled());
    }

    // The count from before the start arrives after it.
    void alteAntwortGibtDenStartknopfNichtFrei()
    {
        p->starten();
        p->staende = {passt};
        p->steuerung->zeigen(false);
        p->vor();
        knopf(u"knStart"_s)->click();
        p->prozesse.zoegert = true; // the answer to the click is already on its way
        p->vor();
        antworten();
        QCOMPARE(p->arbeitsplatz.starts.size(), 1);
        antworten();
        QCOMPARE(knopf(u"knStart"_s)->text(), rekordboxLaeuft);
        QVERIFY(!knopf(u"knStart"_s)->isEnabled());
    }

    void waehrendDesLetztenBlicksBleibtDerStartknopfGesperrt()
    {
        p->starten();
        p->steuerung->zeigen(false);
        p->vor();
        p->prozesse.zoegert = true;
        knopf(u"knStart"_s)->click();
        knopf(u"knStart"_s)->click(); // asks once
        QCOMPARE(p->ablauf->starter.schritt(), Startschritt::Fragt);
        antworten();
        QCOMPARE(p->ablauf->starter.schritt(), Startschritt::Prueft);
        QVERIFY(!knopf(u"knStart"_s)->isEnabled());
        antworten(); // to what the button shows
        QVERIFY(!knopf(u"knStart"_s)->isEnabled());
        QCOMPARE(p->wege().filter(u"stand"_s).size(), 1);
    }

    void rekordboxKommtWaehrendGefragtWird_data()
    {
        QTest::addColumn<bool>("menue");
        QTest::addColumn<bool>("nachDemBlick");
        QTest::newRow("window, before the look") << false << false;
        QTest::newRow("window, after the look") << false << true;
        QTest::newRow("menu, before the look") << true << false;
        QTest::newRow("menu, after the look") << true << true;
    }
    // It was counted before it came, and was started a second time.
    void rekordboxKommtWaehrendGefragtWird()
    {
        QFETCH(const bool, menue);
        QFETCH(const bool, nachDemBlick);
        p->starten();
        p->staende = {passt};
        p->steuerung->zeigen(false);
        p->vor();
        p->prozesse.zoegert = true;
        if (menue) {
            p->zeile(u"rekordbox starten"_s)->trigger();
        } else {
            knopf(u"knStart"_s)->click();
        }
        p->vor();
        if (nachDemBlick) {
            antworten();
        }
        p->rekordboxOffen();
        antworten();
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
        QCOMPARE(p->ablauf->starter.schritt(), Startschritt::Ruht);
        QCOMPARE(p->steuerung->fensterSichtbar(), menue);
        QCOMPARE(p->ablauf->abgleicher.geschuldet(), !menue);
    }

    void abgleichBeginntWaehrendGefragtWird_data()
    {
        QTest::addColumn<bool>("nochUnterwegs");
        QTest::newRow("it still runs") << true;
        QTest::newRow("it has failed by then") << false;
    }
    // Nothing starts into a sync, nor on what a failed one has left.
    void abgleichBeginntWaehrendGefragtWird()
    {
        QFETCH(const bool, nochUnterwegs);
        p->starten();
        p->staende = {ausstehend};
        p->steuerung->zeigen(false);
        p->vor();
        knopf(u"knStart"_s)->click();
        p->vor();
        QCOMPARE(p->ablauf->starter.schritt(), Startschritt::GleichtAb);
        p->prozesse.zoegert = true;
        p->netz.beantworten(gut);
        p->vor();
        p->abgleich(Anlass::Hand);
        p->vor();
        if (!nochUnterwegs) {
            p->netz.beantworten(fehler);
            p->vor();
        }
        antworten();
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
        QCOMPARE(p->ablauf->starter.schritt(),
                 nochUnterwegs ? Startschritt::Wartet : Startschritt::Ruht);
        QVERIFY(p->steuerung->fensterSichtbar());
    }

    // The timer asks, rekordbox is asked to start, then the answer comes: nothing ran.
    void startBeginntWaehrendDerTaktFragt()
    {
        p->starten();
        p->abgleiche = {gut}; // at login
        p->staende = {passt};
        p->vor(599);
        p->ablauf->abgleicher.schulden();
        p->prozesse.zoegert = true;
        p->vor(1);
        p->prozesse.zoegert = false;
        bool gefragt = false;
        connect(&p->ablauf->starter, &Rekordboxstarter::laeuft, this, [&] {
            gefragt = true;
            QCOMPARE(p->ablauf->starter.schritt(), Startschritt::Startet);
            p->prozesse.antworten();
        });
        p->steuerung->zeigen(false);
        p->vor();
        knopf(u"knStart"_s)->click();
        p->vor();
        QVERIFY(gefragt);
        QCOMPARE(p->arbeitsplatz.starts.size(), 1);
        QVERIFY(p->ablauf->abgleicher.geschuldet());
        QCOMPARE(p->anlaesse(), {u"anmeldung"_s});
        QCOMPARE(p->ablauf->starter.schritt(), Startschritt::Ruht); // the start is over already
    }

    void wacheNachDemEndeFragtSpaet_data()
    {
        QTest::addColumn<bool>("wiederOffen");
        QTest::addColumn<bool>("wiederZu");
        QTest::newRow("it stays closed") << false << false;
        QTest::newRow("it is opened again before the answer") << true << false;
        QTest::newRow("it is opened and quits again, and saves") << true << true;
    }
    void wacheNachDemEndeFragtSpaet()
    {
        QFETCH(const bool, wiederOffen);
        QFETCH(const bool, wiederZu);
        p->rekordboxOffen();
        p->starten();
        p->prozesse.zoegert = true;
        p->rekordboxZu();
        p->vor(3);
        QCOMPARE(p->statusobjekt.hinweis(),
                 u"kalvaro – rekordbox beendet – warte aufs Speichern"_s);
        if (wiederOffen) {
            p->rekordboxOffen();
            p->vor(3);
        }
        if (wiederZu) {
            p->rekordboxLaeuft(false, 0, 1);
            p->vor(3);
        }
        antworten();
        QCOMPARE(p->anlaesse(), wiederOffen ? QStringList() : QStringList{u"nachher"_s});
        QCOMPARE(Steuerungswelt::protokoll().contains(u"rekordbox beendet"_s), !wiederOffen);
    }

    void countdownErstMitDerAntwort_data()
    {
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<bool>("zaehlt");
        QTest::newRow("nothing happens") << QString() << true;
        QTest::newRow("the window is closed and opened again") << u"zu"_s << false;
        QTest::newRow("auto-start is switched off and on") << u"cbAuto"_s << false;
        QTest::newRow("the settings are opened") << u"lnkEinstellungen"_s << false;
    }
    void countdownErstMitDerAntwort()
    {
        QFETCH(const QString, meanwhile);
        QFETCH(const bool, zaehlt);
        Steuerungswelt::ordner().schreiben(u"einstellungen.json"_s, "{\"autostart\":true}");
        p->starten();
        p->steuerung->zeigen(true);
        p->vor();
        p->prozesse.zoegert = true;
        p->netz.beantworten(gut);
        p->vor();
        QVERIFY(p->beschriftung(u"lblCountdown"_s).isEmpty());
        if (meanwhile == u"zu"_s) {
            p->steuerung->fenster()->close();
            p->steuerung->zeigen(false);
        } else if (meanwhile == u"cbAuto"_s) {
            knopf(meanwhile)->click();
            knopf(meanwhile)->click();
        } else if (!meanwhile.isEmpty()) {
            knopf(meanwhile)->click();
        }
        antworten();
        QCOMPARE(!p->beschriftung(u"lblCountdown"_s).isEmpty(), zaehlt);
    }

    // Whoever quits does not wait for a count.
    void endeMittenInDerFrage()
    {
        p->starten(false);
        p->prozesse.zoegert = true;
        p->zeile(u"rekordbox starten"_s)->trigger();
        p->steuerung->zeigen(true);
        p->vor();
        p->beenden();
        p->prozesse.antworten();
        ereignisseAbarbeiten();
        QVERIFY(p->arbeitsplatz.starts.isEmpty());
    }

private:
    // All that was asked so far is answered as it was then.
    void antworten() const
    {
        p->prozesse.antworten();
        p->vor();
    }

    [[nodiscard]] QAbstractButton *knopf(const QString &name) const
    {
        return p->steuerung->fenster()->findChild<QAbstractButton *>(name);
    }

    [[nodiscard]] bool abgleichlinkBeschaeftigt() const
    {
        return static_cast<Verweis *>(knopf(u"lnkAbgleich"_s))->beschaeftigt();
    }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungZaehlung)
#include "tst_steuerung_zaehlung.moc"
