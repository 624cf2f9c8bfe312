// How the controller begins, and the queue through which every sync passes.

#include "steuerungswelt.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString guterTitel = u"Bibliothek ist abgeglichen"_s;
const QString gutZeile =
    u"  -> gut: Bibliothek ist abgeglichen | Auf dem neuesten Stand – es gab nichts zu "
    "übertragen."_s;
const QString offlineZeile =
    u"  -> warn: Nicht abgeglichen | Keine Verbindung zur Cloud – rekordbox startet mit dem Stand "
    "dieses Macs. (Verbindung weg.)"_s;

const auto gut = abgleichAntwort(u"aktuell"_s);
const auto krit =
    abgleichAntwort(u"fehler"_s, {{u"ergebnis"_s, QJsonObject{{u"fehler"_s, u"x"_s}}}});
const auto offline = Scripttransport::fehler(u"Verbindung weg."_s);

} // namespace

class TestSteuerungWarteschlange final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { p = std::make_unique<Steuerungswelt>(); }
    void cleanup() { p.reset(); }

    void anfangImHintergrund_data()
    {
        QTest::addColumn<bool>("laeuft");
        QTest::addColumn<QString>("status");
        QTest::newRow("without rekordbox") << false << u"bereit"_s;
        QTest::newRow("rekordbox runs already") << true << u"rekordbox läuft"_s;
    }
    void anfangImHintergrund()
    {
        QFETCH(const bool, laeuft);
        QFETCH(const QString, status);
        p->rekordboxLaeuft(laeuft, laeuft, 0);

        p->starten(true);

        QCOMPARE(p->statusobjekt.verlauf,
                 (QStringList{u"Menü"_s, u"Symbol icloud"_s, u"Hinweis kalvaro"_s,
                              u"Hinweis kalvaro – "_s + status}));
        QCOMPARE(p->kopf(), status + u"   (18:07)"_s);
        QVERIFY(p->mitteilungen.horcht());
        QVERIFY(p->mitteilungen.alle.isEmpty());
        QCOMPARE(p->uhr.offen(), 3); // watch, catch-up, the first sync
        QVERIFY(!p->steuerung->fenster());
        QVERIFY(!p->steuerung->fensterSichtbar());
        QVERIFY(p->arbeitsplatz.auftritte.isEmpty());
        QVERIFY(p->netz.anfragen().isEmpty());
        QVERIFY(Steuerungswelt::protokoll().isEmpty());
    }

    void anfangMitFenster()
    {
        p->starten(false);

        QCOMPARE(p->statusobjekt.verlauf,
                 (QStringList{u"Menü"_s, u"Symbol icloud"_s, u"Hinweis kalvaro"_s,
                              u"Hinweis kalvaro – bereit"_s, u"Hinweis kalvaro – gleicht ab …"_s,
                              u"Symbol arrow.clockwise.icloud"_s}));
        QCOMPARE(p->kopf(), u"gleicht ab …   (18:07)"_s);
        QVERIFY(p->steuerung->fensterSichtbar());
        QCOMPARE(p->arbeitsplatz.auftritte, QList{Arbeitsplatz::Auftritt::Regulaer});
        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{u"Abgleich (vorstart) ..."_s});
        p->vor(15);
        QCOMPARE(p->anlaesse().size(), 1); // the first sync of a background start is not due here
    }

    void anfangMitFensterUndRekordbox()
    {
        p->rekordboxOffen();

        p->starten(false);

        QVERIFY(p->steuerung->fensterSichtbar());
        QCOMPARE(p->beschriftung(u"lblTitel"_s), u"rekordbox läuft"_s);
        QVERIFY(p->netz.anfragen().isEmpty());
    }

    void fensterEntstehtEinmal()
    {
        int angelegt = 0;
        p->starten(true, [&](Hauptfenster &) { ++angelegt; });
        QCOMPARE(angelegt, 0);

        p->steuerung->zeigen(false);
        const Hauptfenster *const erstes = p->steuerung->fenster();
        p->steuerung->zeigen(true);

        QCOMPARE(angelegt, 1);
        QCOMPARE(p->steuerung->fenster(), erstes);
        p->vor();
        QCOMPARE(p->anlaesse(), QStringList{u"vorstart"_s});
    }

    void mitDerSteuerungEndetAlles()
    {
        bool gerufen = false;
        p->starten(true);
        p->abgleich(Anlass::Hand, [&](const Bewertung &) { gerufen = true; });
        p->arbeitsplatz.geweckt();
        p->vor();
        QCOMPARE(p->netz.haengend(), 1);

        p->beenden();

        QCOMPARE(p->netz.haengend(), 0);
        QCOMPARE(p->uhr.offen(), 0);
        QVERIFY(!p->mitteilungen.horcht());
        p->vor(1000);
        QVERIFY(!gerufen);
    }

    void einAbgleich()
    {
        p->starten(true);
        p->statusobjekt.verlauf.clear();
        p->abgleich(Anlass::Hand);
        QCOMPARE(p->statusobjekt.verlauf, (QStringList{u"Hinweis kalvaro – gleicht ab …"_s,
                                                       u"Symbol arrow.clockwise.icloud"_s}));
        QCOMPARE(p->kopf(), u"gleicht ab …   (18:07)"_s);
        QCOMPARE(Steuerungswelt::protokoll(), QStringList{u"Abgleich (hand) ..."_s});

        p->vor(60);
        p->netz.beantworten(gut);
        p->vor();

        QCOMPARE(p->statusobjekt.verlauf.mid(2),
                 (QStringList{u"Symbol checkmark.icloud"_s, u"Hinweis kalvaro – "_s + guterTitel}));
        QCOMPARE(p->kopf(), guterTitel + u"   (18:08)"_s);
        QCOMPARE(Steuerungswelt::protokoll(), (QStringList{u"Abgleich (hand) ..."_s, gutZeile}));
        QCOMPARE(p->anfragen(), QStringList{u"POST http://cloud/api/abgleich"_s});
    }

    // Two requests in quick succession: only one server request is made; the second request's
    // callback receives the first run's result, and its reason is not logged.
    void zweiAnfragenKurzNacheinander()
    {
        QStringList antworten;
        const auto merken = [&](const QString &wer) {
            return [&antworten, wer](const Bewertung &b) { antworten.append(wer + b.titel); };
        };
        p->starten(true);
        p->abgleich(Anlass::Nachher, merken(u"1 "_s));
        p->vor();
        p->abgleich(Anlass::Hand, merken(u"2 "_s));
        p->abgleich(Anlass::Aufgewacht);
        p->abgleich(Anlass::Nachholen, merken(u"3 "_s));
        p->vor();
        QVERIFY(antworten.isEmpty());

        p->netz.beantworten(gut);
        p->vor();

        QCOMPARE(antworten,
                 (QStringList{u"1 "_s + guterTitel, u"2 "_s + guterTitel, u"3 "_s + guterTitel}));
        QCOMPARE(p->anlaesse(), QStringList{u"nachher"_s});
        QCOMPARE(Steuerungswelt::protokoll(), (QStringList{u"Abgleich (nachher) ..."_s, gutZeile}));
        QCOMPARE(p->statusobjekt.symbole.count(u"arrow.clockwise.icloud"_s), 1);
        QCOMPARE(p->mitteilungen.alle.size(), 1); // by the reason of the run, not of who joined it
    }

    // A request without callback while idle leaves nothing waiting after completion.
    void ohneRueckrufBleibtNichtsWartend()
    {
        int gerufen = 0;
        p->abgleiche = {gut, gut, gut};
        p->starten(true);
        p->abgleich(Anlass::Hand);
        p->vor();
        p->abgleich(Anlass::Hand, [&](const Bewertung &) { ++gerufen; });
        QCOMPARE(gerufen, 0);
        p->vor();
        QCOMPARE(gerufen, 1);

        p->abgleich(Anlass::Hand);
        p->vor();

        QCOMPARE(gerufen, 1);
        QCOMPARE(p->anlaesse().size(), 3);
    }

    // Callbacks queued by callbacks belong to a later run, and see everything of theirs reported.
    void rueckrufeDieAbgleichen()
    {
        QStringList verlauf;
        p->abgleiche = {krit, gut};
        p->starten(true);
        p->abgleich(Anlass::Hand, [&](const Bewertung &b) {
            verlauf.append(u"1 "_s + artname(b.art) + u' ' + p->statusobjekt.symbol());
            p->abgleich(Anlass::Vorstart, [&](const Bewertung &spaeter) {
                verlauf.append(u"3 "_s + artname(spaeter.art) + u' ' + p->statusobjekt.symbol());
            });
        });
        p->abgleich(Anlass::Hand,
                    [&](const Bewertung &b) { verlauf.append(u"2 "_s + artname(b.art)); });

        p->vor();

        QCOMPARE(verlauf, (QStringList{u"1 krit exclamationmark.icloud.fill"_s, u"2 krit"_s,
                                       u"3 gut checkmark.icloud"_s}));
        QCOMPARE(p->anlaesse(), (QStringList{u"hand"_s, u"vorstart"_s}));
    }

    void jedesEndeBeendetDenLauf_data()
    {
        QTest::addColumn<QString>("zeile");
        QTest::addColumn<QList<Transport::Ergebnis>>("antwort");
        using Antworten = QList<Transport::Ergebnis>;
        QTest::newRow("an answer") << gutZeile << Antworten{gut};
        QTest::newRow("no connection") << offlineZeile << Antworten{offline};
        QTest::newRow("an error of the server")
            << u"  -> krit: Abgleich nicht möglich | Die Cloud antwortet mit 500."_s
            << Antworten{Scripttransport::antwort(500)};
        QTest::newRow("no answer within 480 s")
            << u"  -> warn: Nicht abgeglichen | Keine Verbindung zur Cloud – rekordbox startet mit "
               "dem Stand dieses Macs. (Die Cloud hat nicht rechtzeitig geantwortet.)"_s
            << Antworten();
    }
    void jedesEndeBeendetDenLauf()
    {
        QFETCH(const QString, zeile);
        QFETCH(const QList<Transport::Ergebnis>, antwort);
        int gerufen = 0;
        p->abgleiche = antwort;
        p->rekordboxLaeuft(false, 0, 1); // keeps the first sync of a background start away
        p->starten(true);
        p->abgleich(Anlass::Hand, [&](const Bewertung &) { ++gerufen; });

        p->vor(480);

        QCOMPARE(gerufen, 1);
        QCOMPARE(Steuerungswelt::protokoll(), (QStringList{u"Abgleich (hand) ..."_s, zeile}));
        p->abgleiche = {gut};
        p->abgleich(Anlass::Hand, [&](const Bewertung &) { ++gerufen; });
        p->vor();
        QCOMPARE(gerufen, 2);
    }

private:
    std::unique_ptr<Steuerungswelt> p;
};

KALVARO_FENSTERTEST(TestSteuerungWarteschlange)
#include "tst_steuerung_warteschlange.moc"
