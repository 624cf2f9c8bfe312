// Which server is asked when, what is remembered and what the caller gets, over a scripted
// transport.

#include "server/zentrale.h"

#include "doubles/scripttransport.h"
#include "testlauf.h"

#include "zentralewelt.h"

#include <QJsonArray>

#include <limits>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString a = u"http://a"_s;
const QString b = u"http://b"_s;
const QString abgelehnt = u"Die Verbindung wurde abgelehnt."_s;
const QString unterbrochen = u"Die Verbindung wurde unterbrochen."_s;
const QString zuSpaet = u"Die Cloud hat nicht rechtzeitig geantwortet."_s;
const QString keine = u"keine Cloud-Adresse eingetragen"_s;

const auto ok = Scripttransport::antwort(200, "{\"ok\":1}");
const QJsonObject okInhalt{{u"ok"_s, 1}};
const auto nein = Scripttransport::fehler(abgelehnt);
const auto spaet = Scripttransport::zeitUeberschritten();

const Auftrag stand{.pfad = u"/api/stand?geraet=mac1"_s, .zeit = Sekunden(8)};

} // namespace

class TestZentrale final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        transport = std::make_unique<Scripttransport>();
        welt = std::make_unique<Zentralewelt>();
    }

    // One row per kind of error; the script answers in order: probe of A, request to A, probe of B,
    // request to B.
    void fehlerarten_data()
    {
        QTest::addColumn<QStringList>("server");
        QTest::addColumn<QList<Transport::Ergebnis>>("ablauf");
        QTest::addColumn<ZentraleFehler>("erwartet");
        using Ablauf = QList<Transport::Ergebnis>;
        const auto zeile = [](const char *name, const QStringList &server, const Ablauf &ablauf,
                              const ZentraleFehler &erwartet) {
            QTest::newRow(name) << server << ablauf << erwartet;
        };
        const auto status = [](int nummer, const QByteArray &daten = {}) {
            return Ablauf{ok, Scripttransport::antwort(nummer, daten)};
        };
        const auto antwortet = [](const QString &rest) {
            return ZentraleFehler{false, false, u"Die Cloud antwortet mit "_s + rest};
        };
        zeile("address plus path is no URL", {u"http://a b"_s}, {},
              {true, false, u"ungültige Adresse"_s});
        zeile("request timed out", {a, b}, {ok, spaet}, {true, true, zuSpaet});
        zeile("timed-out probe only leaves its text", {a}, {spaet}, {true, false, zuSpaet});
        zeile("transport failure of the probe", {a}, {nein}, {true, false, abgelehnt});
        zeile("transport failure of the request", {a}, {ok, nein}, {true, false, abgelehnt});
        zeile("no address", {}, {}, {true, false, keine});
        zeile("every address failed: the last failure counts", {a, b},
              {nein, ok, Scripttransport::fehler(unterbrochen)}, {true, false, unterbrochen});
        zeile("the last failure is no URL", {a, u"http://b|c"_s}, {nein},
              {true, false, u"ungültige Adresse"_s});
        zeile("status without a text", {a, b}, status(404), antwortet(u"404."_s));
        zeile("status with a text", {a}, status(503, "{\"fehler\":\"kommt wieder\"}"),
              antwortet(u"503: kommt wieder"_s));
        zeile("status with an empty text", {a}, status(503, "{\"fehler\":\"\"}"),
              antwortet(u"503."_s));
        zeile("status with a number for a text", {a}, status(503, "{\"fehler\":7}"),
              antwortet(u"503: 7"_s));
        zeile("status with a list", {a}, status(503, "[\"fehler\"]"), antwortet(u"503."_s));
        zeile("status 201 is not 200", {a}, status(201, "{\"ok\":1}"), antwortet(u"201."_s));
        zeile("status 302 that is not followed", {a}, status(302), antwortet(u"302."_s));
        zeile("status of four digits without grouping", {a}, status(1234), antwortet(u"1234."_s));
    }
    void fehlerarten()
    {
        QFETCH(QStringList, server);
        QFETCH(QList<Transport::Ergebnis>, ablauf);
        QFETCH(ZentraleFehler, erwartet);
        for (const auto &schritt : ablauf) {
            transport->dann(schritt);
        }
        Zentrale zentrale(konto(server), *transport);
        const auto ergebnis = welt->holen(zentrale, stand);
        QVERIFY(!ergebnis);
        QCOMPARE(ergebnis.error().meldung, erwartet.meldung);
        QCOMPARE(ergebnis.error(), erwartet);
        QCOMPARE(transport->anfragen().size(), ablauf.size());
        QCOMPARE(zentrale.basis(), std::optional<QString>());
    }

    // Account with servers A and B, A unreachable.
    void aNichtErreichbar()
    {
        transport->dann(nein);
        transport->dann(ok);
        transport->dann(ok);
        Zentrale zentrale(konto({a, b}), *transport);
        QCOMPARE(welt->holen(zentrale, stand), Zentrale::Antwort(okInhalt));
        QCOMPARE(zentrale.basis(), b);
        QCOMPARE(zentrale.adresse(), b);
        transport->dann(ok);
        QCOMPARE(welt->holen(zentrale, stand), Zentrale::Antwort(okInhalt));
        QCOMPARE(transport->zeilen(),
                 (QStringList{u"GET http://a/api/status"_s, u"GET http://b/api/status"_s,
                              u"GET http://b/api/stand?geraet=mac1"_s,
                              u"GET http://b/api/stand?geraet=mac1"_s}));
    }

    // basis B and B times out on the request: basis is cleared, A is not tried.
    void basisUeberschreitetDieZeit()
    {
        Zentrale zentrale(konto({a, b}), *transport);
        merken(zentrale, b);
        transport->dann(spaet);
        QCOMPARE(welt->holen(zentrale, stand), fehler(true, true, zuSpaet));
        QCOMPARE(zentrale.basis(), std::optional<QString>());
        QCOMPARE(zentrale.adresse(), a);
        QCOMPARE(transport->zeilen(), QStringList{u"GET http://b/api/stand?geraet=mac1"_s});
    }

    void basisNichtErreichbar()
    {
        Zentrale zentrale(konto({a, b}), *transport);
        merken(zentrale, b);
        transport->dann(nein);
        transport->dann(ok);
        transport->dann(ok);
        QCOMPARE(welt->holen(zentrale, stand), Zentrale::Antwort(okInhalt));
        QCOMPARE(zentrale.basis(), a);
        QCOMPARE(transport->zeilen(),
                 (QStringList{u"GET http://b/api/stand?geraet=mac1"_s, u"GET http://a/api/status"_s,
                              u"GET http://a/api/stand?geraet=mac1"_s}));
    }

    void andererStatusLaesstBasisStehen()
    {
        Zentrale zentrale(konto({a, b}), *transport);
        merken(zentrale, b);
        transport->dann(Scripttransport::antwort(500));
        QCOMPARE(welt->holen(zentrale, stand),
                 fehler(false, false, u"Die Cloud antwortet mit 500."_s));
        QCOMPARE(zentrale.basis(), b);
        QCOMPARE(transport->anfragen().size(), 1);
    }

    void vorfrageMit404GiltAlsErreichbar()
    {
        transport->dann(Scripttransport::antwort(404, "<html>"));
        transport->dann(ok);
        Zentrale zentrale(konto({a}), *transport);
        QCOMPARE(welt->holen(zentrale, stand), Zentrale::Antwort(okInhalt));
        QCOMPARE(transport->zeilen(), (QStringList{u"GET http://a/api/status"_s,
                                                   u"GET http://a/api/stand?geraet=mac1"_s}));
    }

    void beideVorfragenUeberschreitenDieZeit()
    {
        transport->dann(spaet);
        transport->dann(spaet);
        Zentrale zentrale(konto({a, b}), *transport);
        QCOMPARE(welt->holen(zentrale, stand), fehler(true, false, zuSpaet));
    }

    void status500MitText()
    {
        transport->dann(ok);
        transport->dann(
            Scripttransport::antwort(500, u"{\"fehler\":\"Platte „Musik“ fehlt\"}"_s.toUtf8()));
        Zentrale zentrale(konto({a}), *transport);
        QCOMPARE(welt->holen(zentrale, stand),
                 fehler(false, false, u"Die Cloud antwortet mit 500: Platte „Musik“ fehlt"_s));
    }

    void status401OhneInhalt()
    {
        transport->dann(ok);
        transport->dann(Scripttransport::antwort(401));
        Zentrale zentrale(konto({a}), *transport);
        QCOMPARE(welt->holen(zentrale, stand),
                 fehler(false, false, u"Die Cloud antwortet mit 401."_s));
    }

    void inhalte_data()
    {
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<QJsonValue>("erwartet");
        const QJsonValue leer = QJsonObject();
        QTest::newRow("empty") << QByteArray() << leer;
        QTest::newRow("no JSON") << QByteArray("<html>") << leer;
        QTest::newRow("JSON cut short") << QByteArray("{\"ok\":") << leer;
        QTest::newRow("two values") << QByteArray("{} {}") << leer;
        QTest::newRow("no UTF-8") << QByteArray("{\"ok\":\"\xff\"}") << leer;
        QTest::newRow("deeper than the parser goes")
            << QByteArray(100000, '[') + QByteArray(100000, ']') << leer;
        QTest::newRow("map") << QByteArray(" {\"ok\":1}\n") << QJsonValue(okInhalt);
        QTest::newRow("list") << QByteArray("[1]") << QJsonValue(QJsonArray{1});
    }
    void inhalte()
    {
        QFETCH(QByteArray, daten);
        QFETCH(QJsonValue, erwartet);
        transport->dann(ok);
        transport->dann(Scripttransport::antwort(200, daten));
        Zentrale zentrale(konto({a}), *transport);
        QCOMPARE(welt->holen(zentrale, stand), Zentrale::Antwort(erwartet));
        QCOMPARE(zentrale.basis(), a);
    }

    void keineServer()
    {
        Zentrale zentrale(konto({}), *transport);
        QCOMPARE(zentrale.adresse(), QString());
        QCOMPARE(welt->holen(zentrale, stand), fehler(true, false, keine));
    }

    void ungueltigeAdresse_data()
    {
        QTest::addColumn<QString>("adresse");
        for (const QChar zeichen : u" \t\n\r\"<>{}|\\^`\x7f\x01"_s) {
            const QString name = u"U+%1"_s.arg(zeichen.unicode(), 4, 16, QChar(u'0'));
            QTest::newRow(qPrintable(name)) << u"http://a/x"_s + zeichen + u'y';
        }
        QTest::newRow("blank in the host") << u"http://a b"_s;
        QTest::newRow("blank in front") << u" http://a"_s;
        QTest::newRow("blank at the end") << u"http://a "_s;
        QTest::newRow("half an escape") << u"http://a/%4"_s;
        QTest::newRow("no escape") << u"http://a/%zz"_s;
        QTest::newRow("port out of range") << u"http://a:99999"_s;
        QTest::newRow("port no number") << u"http://a:x"_s;
        QTest::newRow("open bracket") << u"http://[::1"_s;
    }
    // An address that is no URL fails like any other, and the next one is tried.
    void ungueltigeAdresse()
    {
        QFETCH(QString, adresse);
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        Zentrale allein(konto({adresse}), *transport);
        QCOMPARE(welt->holen(allein, stand), fehler(true, false, u"ungültige Adresse"_s));
        QCOMPARE(transport->anfragen().size(), 0);
        Zentrale zentrale(konto({adresse, b}), *transport);
        QCOMPARE(welt->holen(zentrale, stand), Zentrale::Antwort(okInhalt));
        QCOMPARE(zentrale.basis(), b);
    }

    void doppelteEintraege()
    {
        transport->nach([](const Netzanfrage & /*was*/) { return nein; });
        Zentrale zentrale(konto({a, b, a, b, a + u'/'}), *transport);
        QCOMPARE(welt->holen(zentrale, stand), fehler(true, false, abgelehnt));
        QCOMPARE(transport->zeilen(),
                 (QStringList{u"GET http://a/api/status"_s, u"GET http://b/api/status"_s,
                              u"GET http://a//api/status"_s}));
    }

    void ohneSchluesselKeineKopfzeile()
    {
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        Konto ohne = konto({a});
        ohne.schluessel.clear();
        Zentrale zentrale(ohne, *transport);
        QVERIFY(welt->holen(zentrale, stand));
        const QList<Kopfzeile> nur{Kopfzeile{"User-Agent", "kalvaro/1.4"}};
        QCOMPARE(transport->anfragen().at(0).kopf, nur);
        QCOMPARE(transport->anfragen().at(1).kopf, nur);
    }

    void anfragenImGanzen()
    {
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        Zentrale zentrale(konto({a}), *transport);
        QVERIFY(welt->holen(zentrale, {.pfad = u"/api/abgleich"_s,
                                       .methode = "POST",
                                       .body = QJsonObject{{u"anlass"_s, u"hand"_s}},
                                       .zeit = Sekunden(480)}));
        const Netzanfrage &erste = transport->anfragen().at(0);
        QCOMPARE(erste.methode, "GET");
        QCOMPARE(erste.limit, Sekunden(4));
        QVERIFY(!erste.body);
        const QList<Kopfzeile> kopf{Kopfzeile{"User-Agent", "kalvaro/1.4"},
                                    Kopfzeile{"X-Schluessel", "geheim"}};
        QCOMPARE(erste.kopf, kopf);
        const Netzanfrage &zweite = transport->anfragen().at(1);
        QCOMPARE(zweite.url, QUrl(u"http://a/api/abgleich"_s));
        QCOMPARE(zweite.methode, "POST");
        QCOMPARE(zweite.limit, Sekunden(480));
        QCOMPARE(zweite.body, QByteArray("{\"anlass\":\"hand\"}"));
        QCOMPARE(zweite.kopf, kopf + QList({Kopfzeile("Content-Type", "application/json")}));
    }

    void ohneAngabenGetInZwanzigSekunden()
    {
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        Zentrale zentrale(konto({a}), *transport);
        QVERIFY(welt->holen(zentrale, {.pfad = u"/api/playlisten"_s}));
        QCOMPARE(transport->anfragen().at(1).methode, "GET");
        QCOMPARE(transport->anfragen().at(1).limit, Sekunden(20));
        QVERIFY(!transport->anfragen().at(1).body);
    }

    // A body that JSON has no text for ends the request; no other server is tried.
    void bodyOhneJson_data()
    {
        QTest::addColumn<QJsonValue>("wert");
        constexpr double unendlich = std::numeric_limits<double>::infinity();
        QTest::newRow("infinity") << QJsonValue(unendlich);
        QTest::newRow("no number") << QJsonValue(std::numeric_limits<double>::quiet_NaN());
        QTest::newRow("in a list") << QJsonValue(QJsonArray{1, unendlich});
        QTest::newRow("in a map") << QJsonValue(QJsonObject{{u"x"_s, unendlich}});
    }
    void bodyOhneJson()
    {
        QFETCH(QJsonValue, wert);
        transport->nach([](const Netzanfrage & /*was*/) { return ok; });
        Zentrale zentrale(konto({a, b}), *transport);
        const auto ergebnis =
            welt->holen(zentrale, {.pfad = u"/x"_s,
                                   .methode = "POST",
                                   .body = QJsonObject{{u"gut"_s, true}, {u"wert"_s, wert}}});
        QCOMPARE(ergebnis,
                 fehler(false, false, u"Die Anfrage lässt sich nicht als JSON schreiben."_s));
        QCOMPARE(transport->zeilen(), QStringList{u"GET http://a/api/status"_s});
    }

private:
    // Makes `zentrale` remember `adresse`, and the transport forget how.
    void merken(Zentrale &zentrale, const QString &adresse)
    {
        transport->nach([&](const Netzanfrage &was) {
            return was.url.toString().startsWith(adresse) ? ok : nein;
        });
        QVERIFY(welt->holen(zentrale, stand));
        QCOMPARE(zentrale.basis(), adresse);
        transport->nach(nullptr);
        transport->vergessen();
    }

    std::unique_ptr<Scripttransport> transport;
    std::unique_ptr<Zentralewelt> welt;
};

KALVARO_TEST(TestZentrale)
#include "tst_zentrale.moc"
