// What the controller reports of a finished sync: symbol, status line and notification.

#include "steuerungswelt.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto krit =
    abgleichAntwort(u"fehler"_s, {{u"ergebnis"_s, QJsonObject{{u"fehler"_s, u"x"_s}}}});

// Each kind of outcome, with what the status item must then show.
struct Ausgang
{
    Transport::Ergebnis antwort = gut;
    QString art{};
    QString symbol{};
    QString status{};
};

const QMap<QString, Ausgang> ausgaenge{
    {u"gut"_s, {gut, u"gut"_s, u"checkmark.icloud"_s, u"Bibliothek ist abgeglichen"_s}},
    {u"warn"_s,
     {abgleichAntwort(u"verschoben"_s), u"warn"_s, u"exclamationmark.icloud"_s,
      u"Abgleich verschoben"_s}},
    {u"krit"_s, {krit, u"krit"_s, u"exclamationmark.icloud.fill"_s, u"Abgleich gestört"_s}},
    {u"aus"_s,
     {abgleichAntwort(u"rekordbox_offen"_s), u"aus"_s, u"icloud"_s, u"rekordbox läuft"_s}},
    {u"offline"_s,
     {Scripttransport::fehler(u"Verbindung weg."_s), u"warn"_s, u"icloud.slash"_s,
      u"Nicht abgeglichen (offline)"_s}},
};

constexpr Anlass anlaesse[] = {Anlass::Anmeldung, Anlass::Hand,       Anlass::Nachher,
                               Anlass::Nachholen, Anlass::Aufgewacht, Anlass::Vorstart};

} // namespace

class TestSteuerungMelden final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { p = std::make_unique<Steuerungswelt>(); }
    void cleanup() { p.reset(); }

    void symbolUndStatus_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : ausgaenge.keys()) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }
    void symbolUndStatus()
    {
        QFETCH(const QString, name);
        const Ausgang &ausgang = ausgaenge[name];
        p->starten(true);

        const Bewertung b = abgleichen(Anlass::Hand, ausgang.antwort);

        QCOMPARE(artname(b.art), ausgang.art);
        QCOMPARE(b.offline, name == u"offline");
        QCOMPARE(p->statusobjekt.symbol(), ausgang.symbol);
        QCOMPARE(p->statusobjekt.hinweis(), u"kalvaro – "_s + ausgang.status);
        QCOMPARE(p->kopf(), ausgang.status + u"   (18:07)"_s);
    }

    // Every combination of window, outcome, reason and outcome before; "" is none before.
    void mitteilung_data()
    {
        QTest::addColumn<bool>("sichtbar");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("vorher");
        for (const bool sichtbar : {false, true}) {
            for (const QString &name : ausgaenge.keys()) {
                for (const QString &vorher : QStringList{QString()} + ausgaenge.keys()) {
                    QTest::addRow("%s, %s after %s", sichtbar ? "visible" : "hidden",
                                  qPrintable(name), qPrintable(vorher))
                        << sichtbar << name << vorher;
                }
            }
        }
    }
    void mitteilung()
    {
        QFETCH(const bool, sichtbar);
        QFETCH(const QString, name);
        QFETCH(const QString, vorher);
        for (const Anlass anlass : anlaesse) {
            init();
            p->starten(true);
            if (!vorher.isEmpty()) {
                abgleichen(Anlass::Hand, ausgaenge[vorher].antwort);
            }
            if (sichtbar) {
                p->steuerung->zeigen(false);
            }
            p->mitteilungen.alle.clear();

            const Bewertung b = abgleichen(anlass, ausgaenge[name].antwort);

            const bool faellig =
                !sichtbar && name != u"offline" &&
                (anlass == Anlass::Nachher || (name == u"krit" && vorher != u"krit"));
            const QList<Mitteilung> erwartet =
                faellig ? QList<Mitteilung>{{b.titel, b.detail, {}}} : QList<Mitteilung>();
            QVERIFY2(p->mitteilungen.alle == erwartet, qPrintable(anlassname(anlass)));
        }
    }

    // A critical result twice in a row produces one notification; critical, then good, then
    // critical produces two.
    void kritischWirdBeimBeginnGemeldet()
    {
        p->starten(true);
        abgleichen(Anlass::Nachholen, krit);
        abgleichen(Anlass::Nachholen, krit);
        QCOMPARE(p->mitteilungen.alle,
                 (QList<Mitteilung>{{u"Abgleich gestört"_s, u"Es wurde nichts verändert. x"_s}}));

        abgleichen(Anlass::Nachholen, gut);
        abgleichen(Anlass::Nachholen, krit);
        QCOMPARE(p->mitteilungen.alle.size(), 2);
    }

    // What was not posted because the window showed it counts as reported all the same.
    void auchUngemeldetesZaehltAlsLetztes()
    {
        p->starten(true);
        p->steuerung->zeigen(false);
        abgleichen(Anlass::Nachholen, krit);
        p->steuerung->fenster()->verstecken();

        abgleichen(Anlass::Nachholen, krit);

        QVERIFY(p->mitteilungen.alle.isEmpty());
    }

    // Nobody sees a window that lies in the dock or task bar.
    void abgelegtesFensterZeigtNichts()
    {
        p->starten(true);
        p->steuerung->zeigen(false);
        p->steuerung->fenster()->showMinimized();

        abgleichen(Anlass::Nachher, gut);

        QCOMPARE(p->mitteilungen.alle.size(), 1);
    }

    // Once for all times that it is put away.
    void ohneLeisteSagtEineMitteilungWoDasFensterIst()
    {
        p->starten(true);
        p->statusobjekt.leiste(false);
        p->steuerung->zeigen(false);
        QVERIFY(p->mitteilungen.alle.isEmpty());
        p->steuerung->fenster()->verstecken();
        QCOMPARE(p->mitteilungen.alle.size(), 1);
        QCOMPARE(p->mitteilungen.alle.first().titel, u"kalvaro läuft weiter"_s);
        QVERIFY(p->mitteilungen.alle.first().inhalt.contains(u"noch einmal öffnen"_s));
        QVERIFY(!p->mitteilungen.alle.first().ziel);
        QVERIFY(!p->steuerung->fensterSichtbar());
        p->steuerung->zeigen(false);
        QVERIFY(p->steuerung->fensterSichtbar());
        p->steuerung->fenster()->verstecken();
        QCOMPARE(p->mitteilungen.alle.size(), 1);
    }

    void weggelegtesFensterZeigtNichts()
    {
        p->starten(true);
        p->statusobjekt.leiste(false);
        p->steuerung->zeigen(false);
        p->steuerung->fenster()->verstecken();
        p->steuerung->fenster()->setWindowState(Qt::WindowNoState); // as Wayland tells it
        p->mitteilungen.alle.clear();

        abgleichen(Anlass::Nachher, gut);

        QCOMPARE(p->mitteilungen.alle.size(), 1);
    }

    void eineLeisteDieGehtLaesstKeinFensterVerschwinden()
    {
        p->starten(true);
        p->steuerung->zeigen(false);
        p->steuerung->fenster()->verstecken();
        p->statusobjekt.leiste(false);
        p->vor(9);
        p->statusobjekt.leiste(true); // it only started anew
        p->vor(60);
        QVERIFY(!p->steuerung->fenster()->isVisible());
        QVERIFY(p->mitteilungen.alle.isEmpty());

        p->statusobjekt.leiste(false);
        p->vor(9);
        QVERIFY(!p->steuerung->fenster()->isVisible());
        p->vor(2);
        QVERIFY(p->steuerung->fenster()->isMinimized());
        QCOMPARE(p->mitteilungen.alle.size(), 1);
    }

    // One that was never opened is not missed.
    void ohneFensterAendertEineLeisteDieGehtNichts()
    {
        p->starten(true);
        p->statusobjekt.leiste(false);
        p->vor(11);
        QVERIFY(p->steuerung->fenster() == nullptr);
        p->beenden();
        QVERIFY(!p->statusobjekt.gewechselt);
    }

private:
    // Runs a sync to its end.
    Bewertung abgleichen(Anlass anlass, const Transport::Ergebnis &antwort)
    {
        std::optional<Bewertung> ergebnis;
        p->abgleiche = {antwort};
        p->abgleich(anlass, [&](const Bewertung &b) { ergebnis = b; });
        p->vor();
        return ergebnis.value_or(Bewertung{.titel = u"no answer"_s});
    }

    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungMelden)
#include "tst_steuerung_melden.moc"
