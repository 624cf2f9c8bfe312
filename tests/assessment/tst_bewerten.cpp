#include "assessment/bewerten.h"

#include "doubles/datenordner.h"
#include "doubles/jsonlesen.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "foundation/werte.h"
#include "server/zentrale.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString abgeglichen = u"Bibliothek ist abgeglichen"_s;
const QString nichtsZuTun = u"Auf dem neuesten Stand – es gab nichts zu übertragen."_s;
const QString probe = u"Probebetrieb: kalvaro prüft vorerst nur und überträgt noch nichts."_s;
const QString verschoben = u"Es wurde nichts verändert, der nächste Abgleich holt es nach."_s;
const QString angehalten =
    u"Zur Sicherheit wurde nichts verändert: dieser Abgleich hätte ungewöhnlich viel gelöscht. "
    "Deine Bibliothek ist unverändert, der Betreiber der Cloud schaut es sich an."_s;
const QString ohneFernzugang = u"Der Fernzugang (SSH) zu diesem Mac fehlt gerade. rekordbox "
                               "startet mit dem Stand dieses Macs."_s;
const QString offline = u"Keine Verbindung zur Cloud – rekordbox startet mit dem Stand dieses "
                        "Macs. (%1)"_s;

QByteArray mitZustand(const QByteArray &zustand, const QByteArray &weiteres = {})
{
    return R"({"ergebnis":{"zustand":")" + zustand + "\"}" + weiteres + '}';
}

const QByteArray studioOffen = R"("andere":[{"name":"Studio","rekordbox_offen":true}])";
const QString studioOffenSatz =
    u"Auf „Studio“ ist rekordbox noch offen – Änderungen von dort fehlen hier noch."_s;

} // namespace

class TestBewerten final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void zustand_data();
    void zustand();
    void probelauf_data();
    void probelauf();
    void probesatz_data();
    void probesatz();
    void andereGeraete_data();
    void andereGeraete();
    void updateAngebotBeiJedemZustand_data();
    void updateAngebotBeiJedemZustand();
    void antwortBleibtGanzErhalten();
    void antwortenOhneInhalt_data();
    void antwortenOhneInhalt();
    void fehlerDerZentrale_data();
    void fehlerDerZentrale();

    void verschachtelungBisZurGrenzeDesParsers();
    void einMegabyteText();
    void hunderttausendGeraete();

    void anfrage_data();
    void anfrage();
    void ergebnisAusDerCloud();
    void angehaltenWirdProtokolliert_data();
    void angehaltenWirdProtokolliert();
    void sonstWirdNichtsProtokolliert_data();
    void sonstWirdNichtsProtokolliert();
    void gescheiterteAnfrage_data();
    void gescheiterteAnfrage();
    void fristVonAchtMinuten();
    void rufErstAusDerEreignisschleife();
    void ohneBesitzerKeinRuf();
    void zweiAnfragenZugleich();
    void langeAntwortWirdNebenherBewertet_data();
    void langeAntwortWirdNebenherBewertet();

private:
    // What bewerten() hands over for the scripted answers, in virtual time.
    std::optional<Bewertung>
    bewertet(Anlass anlass = Anlass::Hand,
             const Konto &konto = {u"Studio"_s, u"mac-1"_s, u"geheim"_s, {u"http://cloud"_s}})
    {
        Zentrale zentrale(konto, *weg);
        std::optional<Bewertung> ergebnis;
        int rufe = 0;
        bewerten(zentrale, anlass, &zentrale, [&](const Bewertung &b) {
            ergebnis = b;
            ++rufe;
        });
        uhr->vor(1000s);
        if (rufe > 1) {
            qFatal("called more than once");
        }
        return ergebnis;
    }

    void antworten(const QByteArray &antwort, int status = 200)
    {
        weg->dann(Scripttransport::antwort(200)); // the probe
        weg->dann(Scripttransport::antwort(status, antwort));
    }

    Datenordner ordner;
    std::optional<Testuhr> uhr; // new for each test, as is the transport
    std::optional<Scripttransport> weg;
};

void TestBewerten::init()
{
    ordner.leeren();
    weg.reset();
    uhr.emplace();
    weg.emplace(&*uhr);
}

void TestBewerten::zustand_data()
{
    QTest::addColumn<QByteArray>("antwort");
    QTest::addColumn<QString>("art");
    QTest::addColumn<QString>("titel");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<bool>("startbar");

    const auto zeile = [](const char *name, const QByteArray &antwort, const QString &art,
                          const QString &titel, const QString &detail, bool startbar) {
        QTest::newRow(name) << antwort << art << titel << detail << startbar;
    };
    const auto gut = [&](const char *name, const QByteArray &antwort, const QString &detail) {
        zeile(name, antwort, u"gut"_s, abgeglichen, detail, true);
    };
    const auto unbekannt = [&](const char *name, const QByteArray &antwort, const QString &detail) {
        zeile(name, antwort, u"warn"_s, u"Unbekannter Zustand"_s, detail, false);
    };

    gut("aktuell", mitZustand("aktuell"), nichtsZuTun);
    gut("aktuell passes over the change maps",
        R"({"ergebnis":{"zustand":"aktuell","aendert_geraet":{"djmdContent":3}}})", nichtsZuTun);
    gut("abgeglichen with both change maps missing", mitZustand("abgeglichen"), nichtsZuTun);
    gut("abgeglichen with both change maps empty",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_zentrale":{},"aendert_geraet":{}}})",
        nichtsZuTun);
    gut("abgeglichen with counts of 0",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":{"djmdContent":0}}})",
        nichtsZuTun);
    gut("abgeglichen with counts that add up to 0",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":{"djmdContent":2},
            "aendert_zentrale":{"djmdContent":-2}}})",
        nichtsZuTun);
    gut("abgeglichen with change maps of the wrong type",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":[3],"aendert_zentrale":"2"}})",
        nichtsZuTun);
    gut("abgeglichen with changes to this Mac",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":{"djmdContent":3}}})",
        u"Übernommen: Änderungen an 3 Titeln."_s);
    gut("abgeglichen with changes to the central copy",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_zentrale":{"djmdPlaylist":1}}})",
        u"Gesichert: Änderungen an 1 Playlist."_s);
    gut("abgeglichen with changes in both directions",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_zentrale":{"djmdContent":1},
            "aendert_geraet":{"djmdContent":1234,"djmdPlaylist":2}}})",
        u"Übernommen: Änderungen an 1.234 Titeln und 2 Playlisten. "
        "Gesichert: Änderungen an 1 Titel."_s);
    gut("abgeglichen with cue changes only",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":{"djmdCue":9}}})",
        u"Kleinere Änderungen (Cues, Verlauf, Analysen) übertragen."_s);
    gut("abgeglichen with a negative sum is not 0",
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":{"djmdContent":-1}}})",
        u"Kleinere Änderungen (Cues, Verlauf, Analysen) übertragen."_s);
    zeile("rekordbox_offen", mitZustand("rekordbox_offen"), u"aus"_s, u"rekordbox läuft"_s,
          u"Der Abgleich folgt, sobald rekordbox beendet ist."_s, false);
    zeile("verschoben without a remark", mitZustand("verschoben"), u"warn"_s,
          u"Abgleich verschoben"_s, verschoben, true);
    zeile("verschoben with an empty remark: no brackets are added",
          R"({"ergebnis":{"zustand":"verschoben","hinweis":""}})", u"warn"_s,
          u"Abgleich verschoben"_s, verschoben, true);
    zeile("verschoben with a remark",
          R"({"ergebnis":{"zustand":"verschoben","hinweis":"USB-Stick steckt"}})", u"warn"_s,
          u"Abgleich verschoben"_s, verschoben + u" (USB-Stick steckt)"_s, true);
    zeile("laeuft_schon", mitZustand("laeuft_schon"), u"warn"_s, u"Cloud ist beschäftigt"_s,
          u"Ein anderer Abgleich läuft noch. kalvaro versucht es gleich wieder."_s, false);
    zeile("angehalten", mitZustand("angehalten"), u"krit"_s, u"Abgleich angehalten"_s, angehalten,
          false);
    zeile("fehler with a text", R"({"ergebnis":{"zustand":"fehler","fehler":"Platte voll."}})",
          u"krit"_s, u"Abgleich gestört"_s, u"Es wurde nichts verändert. Platte voll."_s, false);
    zeile("fehler without a text keeps its trailing blank", mitZustand("fehler"), u"krit"_s,
          u"Abgleich gestört"_s, u"Es wurde nichts verändert. "_s, false);
    zeile("nicht_erreichbar", mitZustand("nicht_erreichbar"), u"warn"_s,
          u"Die Cloud erreicht diesen Mac nicht"_s, ohneFernzugang, true);
    unbekannt("an unknown state xyz", mitZustand("xyz"), u"xyz"_s);
    unbekannt("an empty state", mitZustand(""), QString());
    unbekannt("a missing state", R"({"ergebnis":{}})", QString());
    unbekannt("the state in capitals", mitZustand("Aktuell"), u"Aktuell"_s);
    unbekannt("the state with a blank", mitZustand("aktuell "), u"aktuell "_s);
    unbekannt("the state a number", R"({"ergebnis":{"zustand":3}})", u"3"_s);
    unbekannt("the state null", R"({"ergebnis":{"zustand":null}})", QString());
    unbekannt("the state at the wrong place", R"({"zustand":"aktuell"})", QString());
    unbekannt("markup in the state", mitZustand("<b>x</b>"), u"<b>x</b>"_s);
}

void TestBewerten::zustand()
{
    QFETCH(QByteArray, antwort);

    const Bewertung b = antwortBewerten(json(antwort));

    QTEST(artname(b.art), "art");
    QTEST(b.titel, "titel");
    QTEST(b.detail, "detail");
    QTEST(b.startbar, "startbar");
    QCOMPARE(b.beschaeftigt, b.titel == u"Cloud ist beschäftigt");
    QVERIFY(!b.offline);
    QCOMPARE(b.betrieb, QString());
    QVERIFY(!b.neueVersion.has_value());
    QVERIFY(!b.updateAdresse.has_value());
    QVERIFY2(ordner.protokollzeilen().isEmpty(), "the caller logs");
}

void TestBewerten::probelauf_data()
{
    QTest::addColumn<QByteArray>("antwort");
    QTest::addColumn<QString>("art");
    QTest::addColumn<QString>("titel");
    QTest::addColumn<QString>("detail");

    const auto zeile = [](const char *name, const QByteArray &antwort, const QString &art,
                          const QString &titel, const QString &detail) {
        QTest::newRow(name) << antwort << art << titel << detail;
    };
    const QString unterschiede = u"Unterschiede gefunden"_s;
    const QString identisch = u"Identisch mit der Cloud. "_s + probe;

    zeile("schatten with differences",
          R"({"ergebnis":{"zustand":"schatten","aendert_geraet":{"djmdContent":3},
              "aendert_zentrale":{"djmdContent":1}}})",
          u"warn"_s, unterschiede,
          u"Diesem Mac fehlen Änderungen an 3 Titeln. Von hier kämen Änderungen an 1 Titel. "_s +
              probe);
    zeile("schatten with differences in cues only",
          R"({"ergebnis":{"zustand":"schatten","aendert_geraet":{"djmdCue":3}}})", u"warn"_s,
          unterschiede, u"Nur kleinere Unterschiede (Cues, Verlauf, Analysen). "_s + probe);
    zeile("schatten without differences", mitZustand("schatten"), u"gut"_s, abgeglichen, identisch);
    zeile("schatten looks at its own result, not at the device's",
          R"({"ergebnis":{"zustand":"schatten"},
              "geraet":{"schatten_ergebnis":{"aendert_geraet":{"djmdContent":3}}}})",
          u"gut"_s, abgeglichen, identisch);
    zeile("schatten_unveraendert and no geraet.schatten_ergebnis",
          mitZustand("schatten_unveraendert"), u"gut"_s, u"Bibliothek geprüft"_s, probe);
    zeile("schatten_unveraendert and a geraet without schatten_ergebnis",
          mitZustand("schatten_unveraendert", R"(,"geraet":{"zustand":"x"})"), u"gut"_s,
          u"Bibliothek geprüft"_s, probe);
    zeile("schatten_unveraendert with differences the last time",
          mitZustand("schatten_unveraendert",
                     R"(,"geraet":{"schatten_ergebnis":{"aendert_zentrale":{"djmdPlaylist":2}}})"),
          u"warn"_s, unterschiede, u"Von hier kämen Änderungen an 2 Playlisten. "_s + probe);
    zeile("schatten_unveraendert without differences the last time",
          mitZustand("schatten_unveraendert",
                     R"(,"geraet":{"schatten_ergebnis":{"aendert_zentrale":{}}})"),
          u"gut"_s, abgeglichen, identisch);
    zeile("schatten_unveraendert looks at the device's result, not at its own",
          R"({"ergebnis":{"zustand":"schatten_unveraendert","aendert_geraet":{"djmdContent":3}},
              "geraet":{"schatten_ergebnis":{}}})",
          u"gut"_s, abgeglichen, identisch);
    zeile("schatten_unveraendert with null: present, and without differences",
          mitZustand("schatten_unveraendert", R"(,"geraet":{"schatten_ergebnis":null})"), u"gut"_s,
          abgeglichen, identisch);
}

void TestBewerten::probelauf()
{
    QFETCH(QByteArray, antwort);
    // Whatever mode the server reports, the sentence of the dry run stands there once.
    for (const QByteArray betrieb : {"", R"("betrieb":"schatten",)", R"("betrieb":"scharf",)"}) {
        const Bewertung b = antwortBewerten(json('{' + betrieb + antwort.sliced(1)));

        QTEST(artname(b.art), "art");
        QTEST(b.titel, "titel");
        QTEST(b.detail, "detail");
        QVERIFY(b.startbar);
        QVERIFY(!b.offline);
    }
}

void TestBewerten::probesatz_data()
{
    QTest::addColumn<QByteArray>("ergebnis");
    QTest::addColumn<QString>("betrieb");
    QTest::addColumn<QString>("detail");

    const auto zeile = [](const char *name, const QByteArray &ergebnis, const QString &detail,
                          const QString &betrieb = u"schatten"_s) {
        QTest::newRow(name) << ergebnis << betrieb << detail;
    };
    const QString mitProbe = u' ' + probe;

    zeile("schatten with aktuell", R"({"zustand":"aktuell"})", nichtsZuTun + mitProbe);
    zeile("schatten with abgeglichen",
          R"({"zustand":"abgeglichen","aendert_geraet":{"djmdContent":1}})",
          u"Übernommen: Änderungen an 1 Titel."_s + mitProbe);
    zeile("schatten with fehler: no sentence", R"({"zustand":"fehler","fehler":"X."})",
          u"Es wurde nichts verändert. X."_s);
    zeile("schatten with angehalten: no sentence", R"({"zustand":"angehalten"})", angehalten);
    zeile("schatten with rekordbox_offen", R"({"zustand":"rekordbox_offen"})",
          u"Der Abgleich folgt, sobald rekordbox beendet ist."_s + mitProbe);
    zeile("schatten with verschoben", R"({"zustand":"verschoben","hinweis":"H"})",
          verschoben + u" (H)"_s + mitProbe);
    zeile("schatten with laeuft_schon", R"({"zustand":"laeuft_schon"})",
          u"Ein anderer Abgleich läuft noch. kalvaro versucht es gleich wieder."_s + mitProbe);
    zeile("schatten with nicht_erreichbar", R"({"zustand":"nicht_erreichbar"})",
          ohneFernzugang + mitProbe);
    zeile("schatten with an unknown state", R"({"zustand":"xyz"})", u"xyz"_s + mitProbe);
    zeile("schatten with an empty state", R"({})", mitProbe);
    zeile("a detail that speaks of Probebetrieb: not twice",
          R"({"zustand":"verschoben","hinweis":"wegen Probebetrieb"})",
          verschoben + u" (wegen Probebetrieb)"_s);
    zeile("an unknown state that speaks of Probebetrieb: not twice",
          R"({"zustand":"Probebetrieb"})", u"Probebetrieb"_s);
    zeile("probebetrieb in small letters is another word",
          R"({"zustand":"verschoben","hinweis":"probebetrieb"})",
          verschoben + u" (probebetrieb)"_s + mitProbe);
    zeile("another mode", R"({"zustand":"aktuell"})", nichtsZuTun, u"scharf"_s);
    zeile("the mode in capitals", R"({"zustand":"aktuell"})", nichtsZuTun, u"Schatten"_s);
    zeile("an empty mode", R"({"zustand":"aktuell"})", nichtsZuTun, QString());
}

void TestBewerten::probesatz()
{
    QFETCH(QByteArray, ergebnis);
    QFETCH(QString, betrieb);

    const Bewertung b =
        antwortBewerten(QJsonObject{{u"betrieb"_s, betrieb}, {u"ergebnis"_s, json(ergebnis)}});

    QTEST(b.detail, "detail");
    QCOMPARE(b.betrieb, betrieb);
    QVERIFY(b.detail.count(probe) <= 1);
}

void TestBewerten::andereGeraete_data()
{
    QTest::addColumn<QByteArray>("antwort");
    QTest::addColumn<QString>("detail");

    const QByteArray dazu = ',' + studioOffen;
    const QString satz = u' ' + studioOffenSatz;
    const auto zeile = [](const char *name, const QByteArray &antwort, const QString &detail) {
        QTest::newRow(name) << antwort << detail;
    };

    zeile("aktuell", mitZustand("aktuell", dazu), nichtsZuTun + satz);
    zeile("abgeglichen", mitZustand("abgeglichen", dazu), nichtsZuTun + satz);
    zeile("verschoben", mitZustand("verschoben", dazu), verschoben + satz);
    zeile("nicht_erreichbar", mitZustand("nicht_erreichbar", dazu), ohneFernzugang + satz);
    zeile("schatten", mitZustand("schatten", dazu), u"Identisch mit der Cloud. "_s + probe + satz);
    zeile("schatten_unveraendert", mitZustand("schatten_unveraendert", dazu), probe + satz);
    zeile("after the sentence of the dry run",
          mitZustand("aktuell", R"(,"betrieb":"schatten")" + dazu),
          nichtsZuTun + u' ' + probe + satz);
    zeile("rekordbox_offen: no remark, since it is not startbar",
          mitZustand("rekordbox_offen", dazu),
          u"Der Abgleich folgt, sobald rekordbox beendet ist."_s);
    zeile("laeuft_schon: no remark", mitZustand("laeuft_schon", dazu),
          u"Ein anderer Abgleich läuft noch. kalvaro versucht es gleich wieder."_s);
    zeile("angehalten: no remark", mitZustand("angehalten", dazu), angehalten);
    zeile("fehler: no remark", mitZustand("fehler", dazu), u"Es wurde nichts verändert. "_s);
    zeile("an unknown state: no remark", mitZustand("xyz", dazu), u"xyz"_s);
    zeile("devices with nothing to say", mitZustand("aktuell", R"(,"andere":[{"name":"Studio"}])"),
          nichtsZuTun);
}

void TestBewerten::andereGeraete()
{
    QFETCH(QByteArray, antwort);

    QTEST(antwortBewerten(json(antwort)).detail, "detail");
}

void TestBewerten::updateAngebotBeiJedemZustand_data()
{
    QTest::addColumn<QByteArray>("zustand");

    for (const char *zustand :
         {"aktuell", "abgeglichen", "schatten", "schatten_unveraendert", "rekordbox_offen",
          "verschoben", "laeuft_schon", "angehalten", "fehler", "nicht_erreichbar", "xyz", ""}) {
        QTest::addRow("\"%s\"", zustand) << QByteArray(zustand);
    }
}

void TestBewerten::updateAngebotBeiJedemZustand()
{
    QFETCH(QByteArray, zustand);
    const QByteArray app = R"(,"app":{"version":"1.5","url":"https://cloud/kalvaro-1.5.zip"})";

    const Bewertung mit = antwortBewerten(json(mitZustand(zustand, app)));
    const Bewertung ohne = antwortBewerten(json(mitZustand(zustand)));

    QCOMPARE(mit.neueVersion, u"1.5"_s);
    QCOMPARE(mit.updateAdresse, u"https://cloud/kalvaro-1.5.zip"_s);
    QVERIFY(!ohne.neueVersion.has_value());
    QVERIFY(!ohne.updateAdresse.has_value());
    QCOMPARE(mit.detail, ohne.detail);
}

void TestBewerten::antwortBleibtGanzErhalten()
{
    const QJsonValue antwort = json(
        R"({"ergebnis":{"zustand":"fehler"},"statistik":{"titel":12,"stand":null},"x":[1,{"y":2}]})");

    QCOMPARE(antwortBewerten(antwort).antwort, antwort);
}

void TestBewerten::antwortenOhneInhalt_data()
{
    QTest::addColumn<QJsonValue>("antwort");

    QTest::newRow("an empty map") << QJsonValue(QJsonObject());
    QTest::newRow("a list") << json(R"([{"ergebnis":{"zustand":"aktuell"}}])");
    QTest::newRow("null") << QJsonValue(QJsonValue::Null);
    QTest::newRow("nothing") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("ergebnis a text") << json(R"({"ergebnis":"aktuell"})");
}

void TestBewerten::antwortenOhneInhalt()
{
    QFETCH(QJsonValue, antwort);

    const Bewertung b = antwortBewerten(antwort);

    QCOMPARE(b, (Bewertung{.titel = u"Unbekannter Zustand"_s, .antwort = antwort}));
}

void TestBewerten::fehlerDerZentrale_data()
{
    QTest::addColumn<ZentraleFehler>("fehler");
    QTest::addColumn<Bewertung>("erwartet");

    const auto ohneVerbindung = [](const QString &meldung) {
        return Bewertung{.art = Art::Warn,
                         .titel = u"Nicht abgeglichen"_s,
                         .detail = offline.arg(meldung),
                         .startbar = true,
                         .offline = true};
    };
    const auto abgelehnt = [](const QString &meldung) {
        return Bewertung{.art = Art::Krit, .titel = u"Abgleich nicht möglich"_s, .detail = meldung};
    };

    QTest::newRow("server unreachable: the detail ends with the client's reason in brackets")
        << ZentraleFehler{true, false, u"Der Server wurde nicht gefunden."_s}
        << ohneVerbindung(u"Der Server wurde nicht gefunden."_s);
    QTest::newRow("a time-out of the request lands there too")
        << ZentraleFehler{true, true, u"Die Cloud hat nicht rechtzeitig geantwortet."_s}
        << ohneVerbindung(u"Die Cloud hat nicht rechtzeitig geantwortet."_s);
    QTest::newRow("a reason with a placeholder of ours")
        << ZentraleFehler{true, false, u"100 %1 %2"_s} << ohneVerbindung(u"100 %1 %2"_s);
    QTest::newRow("an empty reason") << ZentraleFehler{true, false, {}} << ohneVerbindung({});
    QTest::newRow("a server answer with status 500: the client's text unchanged")
        << ZentraleFehler{false, false, u"Die Cloud antwortet mit 500: voll"_s}
        << abgelehnt(u"Die Cloud antwortet mit 500: voll"_s);
    QTest::newRow("only the flag offline decides")
        << ZentraleFehler{false, true, u"?"_s} << abgelehnt(u"?"_s);
    QTest::newRow("any other error: its description")
        << ZentraleFehler{false, false, u"Die Anfrage lässt sich nicht als JSON schreiben."_s}
        << abgelehnt(u"Die Anfrage lässt sich nicht als JSON schreiben."_s);
}

void TestBewerten::fehlerDerZentrale()
{
    QFETCH(ZentraleFehler, fehler);
    QFETCH(Bewertung, erwartet);

    const Bewertung b = fehlerBewerten(fehler);

    QCOMPARE(b.detail, erwartet.detail);
    QCOMPARE(b.art, erwartet.art);
    // No mode, no answer, no update offer, no further sentence.
    QCOMPARE(b, erwartet);
}

void TestBewerten::verschachtelungBisZurGrenzeDesParsers()
{
    // The two levels around it belong to the answer.
    const QByteArray tief = QByteArray("{\"a\":").repeated(1021) + "{\"djmdContent\":3}" +
                            QByteArray("}").repeated(1021);
    const QByteArray quelle =
        R"({"ergebnis":{"zustand":"abgeglichen","aendert_geraet":)" + tief + "}}";
    const QJsonObject antwort = QJsonDocument::fromJson(quelle).object();
    QVERIFY(!antwort.isEmpty());

    QCOMPARE(antwortBewerten(antwort).detail,
             u"Kleinere Änderungen (Cues, Verlauf, Analysen) übertragen."_s);
}

void TestBewerten::einMegabyteText()
{
    const QString lang(1'000'000, u'ß');
    const auto antwort = [&](const QString &zustand) {
        return QJsonObject{
            {u"betrieb"_s, u"schatten"_s},
            {u"ergebnis"_s,
             QJsonObject{{u"zustand"_s, zustand}, {u"hinweis"_s, lang}, {u"fehler"_s, lang}}}};
    };

    const QString kurz = gekuerzt(lang);
    QVERIFY(kurz.size() < 40'000);
    QCOMPARE(antwortBewerten(antwort(u"fehler"_s)).detail, u"Es wurde nichts verändert. "_s + kurz);
    QCOMPARE(antwortBewerten(antwort(u"verschoben"_s)).detail,
             verschoben + u" ("_s + kurz + u") "_s + probe);
    QCOMPARE(antwortBewerten(antwort(lang)).detail, kurz + u' ' + probe);
}

void TestBewerten::hunderttausendGeraete()
{
    QJsonArray andere;
    for (int i = 0; i < 100'000; ++i) {
        andere.append(QJsonObject{{u"name"_s, u"Studio"_s}, {u"rekordbox_offen"_s, true}});
    }

    const Bewertung b = antwortBewerten(QJsonObject{
        {u"ergebnis"_s, QJsonObject{{u"zustand"_s, u"aktuell"_s}}}, {u"andere"_s, andere}});

    QVERIFY(b.detail.count(studioOffenSatz) > 500);
    QVERIFY(b.detail.endsWith(u'…'));
    QVERIFY(b.detail.size() < 70'000);
}

void TestBewerten::anfrage_data()
{
    QTest::addColumn<Anlass>("anlass");

    QTest::newRow("anmeldung") << Anlass::Anmeldung;
    QTest::newRow("hand") << Anlass::Hand;
    QTest::newRow("nachher") << Anlass::Nachher;
    QTest::newRow("nachholen") << Anlass::Nachholen;
    QTest::newRow("aufgewacht") << Anlass::Aufgewacht;
    QTest::newRow("vorstart") << Anlass::Vorstart;
}

void TestBewerten::anfrage()
{
    QFETCH(Anlass, anlass);
    antworten(mitZustand("aktuell"));

    QVERIFY(bewertet(anlass).has_value());

    QCOMPARE(weg->zeilen(),
             (QStringList{u"GET http://cloud/api/status"_s, u"POST http://cloud/api/abgleich"_s}));
    const Netzanfrage &anfrage = weg->anfragen().at(1);
    QCOMPARE(anfrage.limit, 480s);
    QVERIFY(anfrage.body.has_value());
    QCOMPARE(QJsonDocument::fromJson(*anfrage.body).object(),
             (QJsonObject{{u"geraet"_s, u"mac-1"_s},
                          {u"anlass"_s, QString::fromLatin1(QTest::currentDataTag())},
                          {u"version"_s, u"1.4"_s}}));
}

void TestBewerten::ergebnisAusDerCloud()
{
    const QByteArray antwort =
        R"({"betrieb":"schatten","ergebnis":{"zustand":"aktuell"},)" + studioOffen +
        R"(,"app":{"version":"1.10","url":"https://c/k"},"statistik":{"titel":5}})";
    antworten(antwort);

    const auto b = bewertet();

    QCOMPARE(b, (Bewertung{.art = Art::Gut,
                           .titel = abgeglichen,
                           .detail = nichtsZuTun + u' ' + probe + u' ' + studioOffenSatz,
                           .betrieb = u"schatten"_s,
                           .startbar = true,
                           .antwort = json(antwort),
                           .neueVersion = u"1.10"_s,
                           .updateAdresse = u"https://c/k"_s}));
}

void TestBewerten::angehaltenWirdProtokolliert_data()
{
    QTest::addColumn<QByteArray>("weiteres");
    QTest::addColumn<QString>("zeile");

    QTest::newRow("with the state of the device")
        << QByteArray(R"(,"geraet":{"zustand":"gesperrt: 412 Löschungen"})")
        << u"angehalten: gesperrt: 412 Löschungen"_s;
    QTest::newRow("without") << QByteArray() << u"angehalten: "_s;
}

void TestBewerten::angehaltenWirdProtokolliert()
{
    QFETCH(QByteArray, weiteres);
    antworten(mitZustand("angehalten", weiteres));

    const auto b = bewertet();

    QVERIFY(b.has_value());
    QCOMPARE(b->art, Art::Krit);
    QTEST(ordner.protokollzeilen().join(u'\n'), "zeile");
}

void TestBewerten::sonstWirdNichtsProtokolliert_data()
{
    QTest::addColumn<QByteArray>("zustand");

    for (const char *zustand :
         {"aktuell", "abgeglichen", "schatten", "schatten_unveraendert", "rekordbox_offen",
          "verschoben", "laeuft_schon", "fehler", "nicht_erreichbar", "Angehalten", ""}) {
        QTest::addRow("\"%s\"", zustand) << QByteArray(zustand);
    }
}

void TestBewerten::sonstWirdNichtsProtokolliert()
{
    QFETCH(QByteArray, zustand);
    antworten(mitZustand(zustand, R"(,"geraet":{"zustand":"angehalten"})"));

    QVERIFY(bewertet().has_value());

    QCOMPARE(ordner.protokollzeilen(), QStringList());
}

void TestBewerten::gescheiterteAnfrage_data()
{
    using Ergebnisse = QList<Transport::Ergebnis>;
    QTest::addColumn<Ergebnisse>("antworten");
    QTest::addColumn<QString>("art");
    QTest::addColumn<QString>("detail");

    const auto da = Scripttransport::antwort(200);
    QTest::newRow("server unreachable")
        << Ergebnisse{Scripttransport::fehler(u"Die Verbindung wurde abgelehnt."_s)} << u"warn"_s
        << offline.arg(u"Die Verbindung wurde abgelehnt."_s);
    QTest::newRow("a time-out of the request")
        << Ergebnisse{da, Scripttransport::zeitUeberschritten()} << u"warn"_s
        << offline.arg(u"Die Cloud hat nicht rechtzeitig geantwortet."_s);
    QTest::newRow("status 500 whose body looks like a result")
        << Ergebnisse{da, Scripttransport::antwort(
                              500, mitZustand("angehalten", R"(,"betrieb":"schatten")"))}
        << u"krit"_s << u"Die Cloud antwortet mit 500."_s;
    QTest::newRow("status 401 with a reason and an update offer")
        << Ergebnisse{da, Scripttransport::antwort(401, R"({"fehler":"Schlüssel unbekannt",
                                       "app":{"version":"2","url":"https://c/k"}})")}
        << u"krit"_s << u"Die Cloud antwortet mit 401: Schlüssel unbekannt"_s;
}

void TestBewerten::gescheiterteAnfrage()
{
    QFETCH(QList<Transport::Ergebnis>, antworten);
    for (const auto &antwort : antworten) {
        weg->dann(antwort);
    }

    const auto b = bewertet();

    QVERIFY(b.has_value());
    QTEST(artname(b->art), "art");
    QTEST(b->detail, "detail");
    QCOMPARE(b->betrieb, QString());
    QVERIFY(b->antwort.isUndefined());
    QVERIFY(!b->neueVersion.has_value());
    QCOMPARE(b->startbar, b->offline);
    QCOMPARE(ordner.protokollzeilen(), QStringList());
}

void TestBewerten::fristVonAchtMinuten()
{
    weg->dann(Scripttransport::antwort(200));
    weg->dannHaengen();
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {u"http://a"_s, u"http://b"_s}}, *weg);
    std::optional<Bewertung> ergebnis;
    bewerten(zentrale, Anlass::Hand, &zentrale, [&](const Bewertung &b) { ergebnis = b; });

    uhr->vor(479900ms);
    QVERIFY(!ergebnis.has_value());
    uhr->vor(100ms);

    QCOMPARE(ergebnis,
             (Bewertung{.art = Art::Warn,
                        .titel = u"Nicht abgeglichen"_s,
                        .detail = u"Keine Verbindung zur Cloud – rekordbox startet mit dem Stand "
                                  "dieses Macs. (Die Cloud hat nicht rechtzeitig geantwortet.)"_s,
                        .startbar = true,
                        .offline = true}));
    QCOMPARE(weg->anfragen().size(), 2);
}

void TestBewerten::rufErstAusDerEreignisschleife()
{
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {}}, *weg);
    std::optional<Bewertung> ergebnis;

    bewerten(zentrale, Anlass::Hand, &zentrale, [&](const Bewertung &b) { ergebnis = b; });
    QVERIFY(!ergebnis.has_value());
    uhr->vor(0s);

    QVERIFY(ergebnis.has_value());
    QCOMPARE(ergebnis->detail, offline.arg(u"keine Cloud-Adresse eingetragen"_s));
}

void TestBewerten::ohneBesitzerKeinRuf()
{
    antworten(mitZustand("angehalten"));
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {u"http://cloud"_s}}, *weg);
    bool gerufen = false;
    auto besitzer = std::make_unique<QObject>();
    bewerten(zentrale, Anlass::Hand, besitzer.get(), [&](const Bewertung &) { gerufen = true; });

    besitzer.reset();
    uhr->vor(1000s);

    QVERIFY(!gerufen);
    QVERIFY(ordner.protokollzeilen().isEmpty());
}

void TestBewerten::zweiAnfragenZugleich()
{
    weg->nach([](const Netzanfrage &anfrage) {
        const QByteArray zustand =
            anfrage.body.value_or(QByteArray()).contains("nachher") ? "verschoben" : "aktuell";
        return Scripttransport::antwort(200, mitZustand(zustand));
    });
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {u"http://cloud"_s}}, *weg);
    QStringList titel;

    bewerten(zentrale, Anlass::Nachher, &zentrale, [&](const Bewertung &b) { titel += b.titel; });
    bewerten(zentrale, Anlass::Hand, &zentrale, [&](const Bewertung &b) { titel += b.titel; });
    uhr->vor(1s);

    QCOMPARE(titel, (QStringList{u"Abgleich verschoben"_s, abgeglichen}));
}

void TestBewerten::langeAntwortWirdNebenherBewertet_data()
{
    QTest::addColumn<int>("ballast");
    QTest::addColumn<bool>("ganz"); // the answer is kept as a whole
    QTest::newRow("short") << 10 << true;
    QTest::newRow("read beside") << 100'000 << true;
    QTest::newRow("not kept") << 2'000'000 << false;
}

void TestBewerten::langeAntwortWirdNebenherBewertet()
{
    QFETCH(const int, ballast);
    QFETCH(const bool, ganz);
    const QJsonObject statistik{{u"titel"_s, 12}, {u"stand"_s, u"2026-11-21T10:00:00Z"_s}};
    const QJsonObject antwort{
        {u"ergebnis"_s, QJsonObject{{u"zustand"_s, u"angehalten"_s}}},
        {u"geraet"_s, QJsonObject{{u"zustand"_s, u"gesperrt"_s}}},
        {u"betrieb"_s, u"scharf"_s},
        {u"statistik"_s, statistik},
        {u"andere"_s, QJsonArray{QJsonObject{{u"name"_s, u"B"_s}, {u"laeuft"_s, true}}}},
        {u"x"_s, QString(ballast, u'x')}};
    antworten(QJsonDocument(antwort).toJson(QJsonDocument::Compact));
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {u"http://cloud"_s}}, *weg);
    std::optional<Bewertung> b;
    bewerten(zentrale, Anlass::Hand, &zentrale, [&](const Bewertung &wert) { b = wert; });
    uhr->vor(1s);
    QTRY_VERIFY(b.has_value());

    Bewertung erwartet = antwortBewerten(antwort);
    QCOMPARE(b->antwort == antwort, ganz);
    QCOMPARE(b->antwort[u"statistik"], QJsonValue(statistik));
    erwartet.antwort = b->antwort;
    QVERIFY(*b == erwartet);
    QCOMPARE(ordner.protokollzeilen().size(), 1);
    QVERIFY(ordner.protokollzeilen().last().endsWith(u"angehalten: gesperrt"));
}

KALVARO_TEST(TestBewerten)
#include "tst_bewerten.moc"
