#include "assessment/startpruefung.h"

#include "doubles/datenordner.h"
#include "doubles/jsonlesen.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "server/zentrale.h"
#include "testlauf.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString offen = u" ist rekordbox noch offen – Änderungen von dort fehlen hier noch."_s;
const QString laeuft = u" überträgt gerade noch – dessen Änderungen fehlen hier noch."_s;

using Hinweis = std::optional<QString>;

} // namespace

class TestStartpruefung final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void vorgaben();
    void geprueft_data();
    void geprueft();
    void protokolliert_data();
    void protokolliert();
    void ohneStandNichtsNoetig();
    void hunderttausendGeraete();
    void geraetInDerAnfrage_data();
    void geraetInDerAnfrage();

    void gefragtWirdMitKurzerFrist();
    void geraetGehtKodiertAufDenWeg();
    void ohneAntwortInAchtSekunden();
    void fehler_data();
    void fehler();
    void antwortOhneJsonIstEineAntwort();
    void ohneBesitzerKeinRuf();
    void rufErstAusDerEreignisschleife();

private:
    // What startPruefen() hands over for the scripted answers, in virtual time.
    std::optional<Startpruefung> pruefen(const QString &geraet = u"mac-1"_s)
    {
        Zentrale zentrale({geraet, geraet, u"k"_s, {u"http://cloud"_s}}, *weg);
        std::optional<Startpruefung> ergebnis;
        int rufe = 0;
        startPruefen(zentrale, &zentrale, [&](const Startpruefung &p) {
            ergebnis = p;
            ++rufe;
        });
        uhr->vor(60s);
        if (rufe > 1) {
            qFatal("called more than once");
        }
        return ergebnis;
    }

    Datenordner ordner;
    std::optional<Testuhr> uhr; // new for each test, as is the transport
    std::optional<Scripttransport> weg;
};

void TestStartpruefung::init()
{
    ordner.leeren();
    weg.reset();
    uhr.emplace();
    weg.emplace(&*uhr);
}

void TestStartpruefung::vorgaben()
{
    const Startpruefung p;

    QVERIFY(!p.noetig);
    QVERIFY(!p.hinweis.has_value());
}

void TestStartpruefung::geprueft_data()
{
    QTest::addColumn<QByteArray>("stand");
    QTest::addColumn<bool>("noetig");
    QTest::addColumn<Hinweis>("hinweis");
    QTest::addColumn<QString>("zeile");

    const QString noetig = u"Startprüfung: erst abgleichen"_s;
    const QString passt = u"Startprüfung: Stand passt"_s;
    const Hinweis keiner;
    const auto zeile = [](const char *name, const QByteArray &stand, bool n, const Hinweis &hinweis,
                          const QString &log) {
        QTest::newRow(name) << stand << n << hinweis << log;
    };

    zeile("ausstehend true", R"({"ausstehend": true})", true, keiner, noetig);
    zeile("another device is transferring",
          R"({"ausstehend": false, "andere": [{"name": "Studio", "laeuft": true}]})", true,
          u"„Studio“"_s + laeuft, noetig + u" | „Studio“"_s + laeuft);
    zeile("rekordbox open elsewhere is only a remark",
          R"({"andere": [{"name": "Studio", "rekordbox_offen": true}]})", false,
          u"Auf „Studio“"_s + offen, passt + u" | Auf „Studio“"_s + offen);
    zeile("ausstehend given as a string true counts as false", R"({"ausstehend": "true"})", false,
          keiner, passt);
    zeile("ausstehend 1 is no boolean", R"({"ausstehend": 1})", false, keiner, passt);
    zeile("ausstehend false", R"({"ausstehend": false})", false, keiner, passt);
    zeile("ausstehend null", R"({"ausstehend": null})", false, keiner, passt);
    zeile("nothing at all", "{}", false, keiner, passt);
    zeile("open and transferring: necessary, one remark",
          R"({"andere": [{"name": "A", "rekordbox_offen": true, "laeuft": true}]})", true,
          u"Auf „A“"_s + offen, noetig + u" | Auf „A“"_s + offen);
    zeile("the last of several is transferring",
          R"({"andere": [{"name": "A"}, {"name": "B", "rekordbox_offen": true},
              {"name": "C", "laeuft": true}]})",
          true, u"Auf „B“"_s + offen + u" „C“"_s + laeuft,
          noetig + u" | Auf „B“"_s + offen + u" „C“"_s + laeuft);
    zeile("both reasons at once",
          R"({"ausstehend": true, "andere": [{"name": "A", "laeuft": true}]})", true,
          u"„A“"_s + laeuft, noetig + u" | „A“"_s + laeuft);
    zeile("ausstehend with rekordbox open elsewhere",
          R"({"ausstehend": true, "andere": [{"name": "A", "rekordbox_offen": true}]})", true,
          u"Auf „A“"_s + offen, noetig + u" | Auf „A“"_s + offen);
    zeile("laeuft as a string or number does not count",
          R"({"andere": [{"laeuft": "true"}, {"laeuft": 1}]})", false, keiner, passt);
    zeile("andere no list", R"({"andere": {"laeuft": true}})", false, keiner, passt);
    zeile("entries that are no maps", R"({"andere": [true, null, "laeuft", [true]]})", false,
          keiner, passt);
    zeile("an answer that is a list", R"([{"ausstehend": true}])", false, keiner, passt);
}

void TestStartpruefung::geprueft()
{
    QFETCH(QByteArray, stand);
    QFETCH(bool, noetig);
    QFETCH(Hinweis, hinweis);

    const Startpruefung p = standPruefen(json(stand));

    QCOMPARE(p.noetig, noetig);
    QCOMPARE(p.hinweis, hinweis);
    QVERIFY2(ordner.protokollzeilen().isEmpty(), "the caller logs");
}

void TestStartpruefung::protokolliert_data()
{
    geprueft_data();
}

void TestStartpruefung::protokolliert()
{
    QFETCH(QByteArray, stand);
    QFETCH(bool, noetig);
    QFETCH(Hinweis, hinweis);
    QFETCH(QString, zeile);
    weg->dann(Scripttransport::antwort(200)); // the probe
    weg->dann(Scripttransport::antwort(200, stand));

    const auto p = pruefen();

    QCOMPARE(p, (Startpruefung{noetig, hinweis}));
    QCOMPARE(ordner.protokollzeilen(), QStringList{zeile});
}

void TestStartpruefung::ohneStandNichtsNoetig()
{
    QCOMPARE(standPruefen(QJsonValue::Undefined), Startpruefung());
    QCOMPARE(standPruefen(QJsonValue::Null), Startpruefung());
}

void TestStartpruefung::hunderttausendGeraete()
{
    QJsonArray andere;
    for (int i = 0; i < 100'000; ++i) {
        andere.append(QJsonObject{{u"name"_s, i}, {u"laeuft"_s, i == 9'999 || i == 99'999}});
    }

    const Startpruefung p = standPruefen(QJsonObject{{u"andere"_s, andere}});

    QVERIFY(p.noetig);
    QCOMPARE(p.hinweis, u"„9999“"_s + laeuft); // names beyond 10,000 are not told
    andere.removeAt(9'999);
    const Startpruefung spaet = standPruefen(QJsonObject{{u"andere"_s, andere}});
    QVERIFY(spaet.noetig && !spaet.hinweis);
}

void TestStartpruefung::geraetInDerAnfrage_data()
{
    QTest::addColumn<QString>("geraet");
    QTest::addColumn<QString>("kodiert");

    QTest::newRow("plain") << u"mac-1"_s << u"mac-1"_s;
    QTest::newRow("a blank") << u"DJ Mac"_s << u"DJ%20Mac"_s;
    QTest::newRow("umlauts") << u"Jörgs Gerät"_s << u"J%C3%B6rgs%20Ger%C3%A4t"_s;
    QTest::newRow("a character beyond the basic plane") << u"💿"_s << u"%F0%9F%92%BF"_s;
    QTest::newRow("what a query may hold stays")
        << u"aZ09-._~!$&'()*+,;=:@/?"_s << u"aZ09-._~!$&'()*+,;=:@/?"_s;
    QTest::newRow("what it may not hold")
        << u"#%\"<>[]\\^`{|}"_s << u"%23%25%22%3C%3E%5B%5D%5C%5E%60%7B%7C%7D"_s;
    QTest::newRow("what looks encoded is encoded again") << u"a%20b"_s << u"a%2520b"_s;
    QTest::newRow("a line feed and a zero byte") << u"a\nb"_s + QChar(0) << u"a%0Ab%00"_s;
}

void TestStartpruefung::geraetInDerAnfrage()
{
    QFETCH(QString, geraet);
    QFETCH(QString, kodiert);

    const Auftrag auftrag = standAnfragen(geraet);

    QCOMPARE(auftrag.pfad, u"/api/stand?geraet="_s + kodiert);
    QCOMPARE(auftrag.methode, QByteArray("GET"));
    QVERIFY(!auftrag.body.has_value());
    QCOMPARE(auftrag.zeit, 8s);
}

void TestStartpruefung::gefragtWirdMitKurzerFrist()
{
    weg->dann(Scripttransport::antwort(200));
    weg->dann(Scripttransport::antwort(200, "{}"));

    QVERIFY(pruefen().has_value());

    QCOMPARE(weg->zeilen(), (QStringList{u"GET http://cloud/api/status"_s,
                                         u"GET http://cloud/api/stand?geraet=mac-1"_s}));
    QVERIFY(!weg->anfragen().at(1).body.has_value());
    QCOMPARE(weg->anfragen().at(1).limit, 8s);
}

void TestStartpruefung::geraetGehtKodiertAufDenWeg()
{
    weg->dann(Scripttransport::antwort(200));
    weg->dann(Scripttransport::antwort(200, "{}"));

    QVERIFY(pruefen(u"Jörgs Gerät & #1"_s).has_value());

    QCOMPARE(weg->zeilen().at(1),
             u"GET http://cloud/api/stand?geraet=J%C3%B6rgs%20Ger%C3%A4t%20&%20%231"_s);
}

void TestStartpruefung::ohneAntwortInAchtSekunden()
{
    weg->dann(Scripttransport::antwort(200));
    weg->dannHaengen();
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {u"http://cloud"_s}}, *weg);
    std::optional<Startpruefung> ergebnis;
    startPruefen(zentrale, &zentrale, [&](const Startpruefung &p) { ergebnis = p; });

    uhr->vor(7900ms);
    QVERIFY(!ergebnis.has_value());
    uhr->vor(100ms);

    QCOMPARE(ergebnis, Startpruefung());
    QCOMPARE(ordner.protokollzeilen(),
             QStringList{u"Startprüfung ohne Antwort: "
                         "Die Cloud hat nicht rechtzeitig geantwortet."_s});
}

void TestStartpruefung::fehler_data()
{
    using Ergebnisse = QList<Transport::Ergebnis>;
    QTest::addColumn<Ergebnisse>("antworten");
    QTest::addColumn<QString>("meldung");

    QTest::newRow("the server cannot be reached")
        << Ergebnisse{Scripttransport::fehler(u"Die Verbindung wurde abgelehnt."_s)}
        << u"Die Verbindung wurde abgelehnt."_s;
    QTest::newRow("a server that answers 500 with a pending change")
        << Ergebnisse{Scripttransport::antwort(200),
                      Scripttransport::antwort(500, R"({"ausstehend":true})")}
        << u"Die Cloud antwortet mit 500."_s;
    QTest::newRow("a server that answers 404 with a reason")
        << Ergebnisse{Scripttransport::antwort(200),
                      Scripttransport::antwort(404, R"({"fehler":"Gerät unbekannt"})")}
        << u"Die Cloud antwortet mit 404: Gerät unbekannt"_s;
}

void TestStartpruefung::fehler()
{
    QFETCH(QList<Transport::Ergebnis>, antworten);
    for (const auto &antwort : antworten) {
        weg->dann(antwort);
    }

    const auto p = pruefen();

    QCOMPARE(p, Startpruefung());
    QFETCH(QString, meldung);
    QCOMPARE(ordner.protokollzeilen(), QStringList{u"Startprüfung ohne Antwort: "_s + meldung});
}

void TestStartpruefung::antwortOhneJsonIstEineAntwort()
{
    weg->dann(Scripttransport::antwort(200));
    weg->dann(Scripttransport::antwort(200, "<html>"));

    QCOMPARE(pruefen(), Startpruefung());

    QCOMPARE(ordner.protokollzeilen(), QStringList{u"Startprüfung: Stand passt"_s});
}

void TestStartpruefung::ohneBesitzerKeinRuf()
{
    weg->dann(Scripttransport::antwort(200));
    weg->dann(Scripttransport::antwort(200, R"({"ausstehend":true})"));
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {u"http://cloud"_s}}, *weg);
    bool gerufen = false;
    auto besitzer = std::make_unique<QObject>();
    startPruefen(zentrale, besitzer.get(), [&](const Startpruefung &) { gerufen = true; });

    besitzer.reset();
    uhr->vor(60s);

    QVERIFY(!gerufen);
    QVERIFY(ordner.protokollzeilen().isEmpty());
}

void TestStartpruefung::rufErstAusDerEreignisschleife()
{
    Zentrale zentrale({u"m"_s, u"m"_s, {}, {}}, *weg);
    bool gerufen = false;

    startPruefen(zentrale, &zentrale, [&](const Startpruefung &) { gerufen = true; });
    QVERIFY(!gerufen);
    uhr->vor(0s);

    QVERIFY(gerufen);
    QCOMPARE(ordner.protokollzeilen(),
             QStringList{u"Startprüfung ohne Antwort: keine Cloud-Adresse eingetragen"_s});
}

KALVARO_TEST(TestStartpruefung)
#include "tst_startpruefung.moc"
