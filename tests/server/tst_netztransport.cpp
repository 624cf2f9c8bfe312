// What the server sends, and what the caller hears of it.

#include "doubles/rohserver.h"
#include "testlauf.h"

#include "gepackt.h"
#include "netzwelt.h"

#include <QHostAddress>

using namespace kalvaro;
using namespace Qt::StringLiterals;
using Ende = Rohserver::Ende;
using Schritt = Rohserver::Schritt;

namespace {

const QString unterbrochen = u"Die Verbindung wurde unterbrochen."_s;
const QString unverstaendlich = u"Der Server antwortet nicht verständlich."_s;
const QString zuGross = u"Die Antwort der Cloud ist zu groß."_s;
const QByteArray stueckweise = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

QByteArray kodiert(const QByteArray &kodierung, const QByteArray &daten)
{
    return Rohserver::antwort(200, daten, "Content-Encoding: " + kodierung + "\r\n");
}

} // namespace

class TestNetztransport final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anfrageByteFuerByte()
    {
        Rohserver server;
        Netzwelt welt;
        QVERIFY(welt.holen(post(server.adresse() + u"/api/x?y=%C3%A4"_s)));
        const QByteArray erwartet = "POST /api/x?y=%C3%A4 HTTP/1.1\r\n"
                                    "Host: 127.0.0.1:" +
                                    QByteArray::number(server.port()) +
                                    "\r\n"
                                    "Accept: */*\r\n"
                                    "Connection: close\r\n"
                                    "Accept-Encoding: gzip, deflate\r\n"
                                    "Accept-Language: de\r\n"
                                    "X-Schluessel: geheim\r\n"
                                    "Content-Type: application/json\r\n"
                                    "Content-Length: 7\r\n"
                                    "\r\n"
                                    "{\"a\":1}";
        QCOMPARE(server.empfangen(), QList<QByteArray>{erwartet});
    }

    void grosserBody()
    {
        Rohserver server;
        Netzwelt welt;
        const QByteArray body(3000000, 'b');
        QVERIFY(welt.holen(post(server.adresse(), body)));
        QCOMPARE(server.verbindungen(), 1);
        QVERIFY(server.empfangen().at(0).endsWith("\r\n\r\n" + body));
    }

    void antworten_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("daten");
        QTest::addColumn<bool>("bisZumEnde");
        const auto zeile = [](const char *name, const QByteArray &bytes, int status,
                              const QByteArray &daten, bool bisZumEnde = false) {
            QTest::newRow(name) << bytes << status << daten << bisZumEnde;
        };
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        zeile("known length", Rohserver::antwort(200, "{\"b\":2}"), 200, "{\"b\":2}");
        zeile("up to the end of the connection", ok + "\r\n{}", 200, "{}", true);
        zeile("HTTP/1.0", "HTTP/1.0 200 OK\r\n\r\n{}", 200, "{}", true);
        zeile("lines without carriage return", "HTTP/1.1 200 OK\nContent-Length: 2\n\n{}", 200,
              "{}");
        zeile("chunked", stueckweise + "2\r\n{}\r\n3\r\n   \r\n0\r\n\r\n", 200, "{}   ");
        zeile("chunked with extension and trailer",
              stueckweise + "2;x=y\r\n{}\r\n0\r\nTrailer: x\r\n\r\n", 200, "{}");
        zeile("gzip", kodiert("gzip", gzip("{\"g\":1}")), 200, "{\"g\":1}");
        zeile("deflate", kodiert("deflate", deflate("{\"g\":1}")), 200, "{\"g\":1}");
        zeile("deflate without its header", kodiert("deflate", deflateOhneKopf("{}")), 200, "{}");
        zeile("100 before the answer",
              "HTTP/1.1 100 Continue\r\n\r\n" + Rohserver::antwort(200, "{}"), 200, "{}");
        const QByteArray arbeitet = "HTTP/1.1 102 Processing\r\nX-A: 1\r\n\r\n";
        const QByteArray hinweis = "HTTP/1.1 103 Early Hints\r\nContent-Encoding: gzip\r\n"
                                   "Location: /x\r\nContent-Length: 9\r\n\r\n";
        zeile("102 before the answer", arbeitet + Rohserver::antwort(200, "{}"), 200, "{}");
        zeile("103 before the answer", hinweis + Rohserver::antwort(302, "{}"), 302, "{}");
        zeile("many interim answers",
              (arbeitet + hinweis).repeated(50) + Rohserver::antwort(500, "{}"), 500, "{}");
        zeile("199 before the answer", "HTTP/1.1 199 x\r\n\r\n" + Rohserver::antwort(200), 200, {});
        zeile("204 without a body", "HTTP/1.1 204 No Content\r\n\r\n", 204, {});
        zeile("304 announces a body it does not send",
              "HTTP/1.1 304 Not Modified\r\nContent-Length: 5\r\n\r\n", 304, {});
        zeile("more than announced", ok + "Content-Length: 2\r\n\r\n{}xyz", 200, "{}");
        zeile("401 with a packed body",
              Rohserver::antwort(401, gzip("{}"), "Content-Encoding: gzip\r\n"), 401, "{}");
    }
    void antworten()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, status);
        QFETCH(QByteArray, daten);
        QFETCH(bool, bisZumEnde); // of the connection
        for (const Ende ende : {Ende::Schliessen, Ende::Offenlassen}) {
            if (ende == Ende::Offenlassen && bisZumEnde) {
                continue;
            }
            Rohserver server;
            server.sonst({.bytes = bytes, .ende = ende});
            Netzwelt welt;
            const auto ergebnis = welt.holen(get(server.adresse()));
            QVERIFY2(ergebnis, qPrintable(ergebnis ? QString() : ergebnis.error().text));
            QCOMPARE(ergebnis->status, status);
            QCOMPARE(ergebnis->daten, daten);
            QCOMPARE(server.verbindungen(), 1);
        }
    }

    void jederStatusIstEineAntwort_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {200, 201, 203, 206, 226, 300, 301, 302, 303, 305, 307, 308, 400,
                                 401, 402, 403, 404, 405, 406, 407, 408, 409, 410, 413, 418, 421,
                                 429, 500, 501, 502, 503, 504, 505, 511, 599, 600, 777, 999}) {
            QTest::newRow(QByteArray::number(status).constData()) << status;
        }
    }
    void jederStatusIstEineAntwort()
    {
        QFETCH(int, status);
        const QByteArray daten = "{\"fehler\":\"so nicht\"}";
        Rohserver server;
        server.sonst({.bytes = Rohserver::antwort(status, daten)});
        Netzwelt welt;
        const auto ergebnis = welt.holen(post(server.adresse()));
        QVERIFY2(ergebnis, qPrintable(ergebnis ? QString() : ergebnis.error().text));
        QCOMPARE(*ergebnis, (Netzantwort{status, daten}));
        QCOMPARE(server.verbindungen(), 1);
    }

    // A challenge is not answered: not with the account, not with one of the system's.
    void anmeldungVerlangt_data()
    {
        QTest::addColumn<QByteArray>("verfahren");
        for (const char *verfahren : {"Basic realm=\"x\"", "Digest realm=\"x\", nonce=\"1\"",
                                      "NTLM", "Negotiate", "Bearer", "?"}) {
            QTest::newRow(verfahren) << QByteArray(verfahren);
        }
    }
    void anmeldungVerlangt()
    {
        QFETCH(QByteArray, verfahren);
        const QByteArray daten = "{\"fehler\":\"Schlüssel unbekannt\"}";
        Rohserver server;
        server.sonst(
            {.bytes = Rohserver::antwort(401, daten, "WWW-Authenticate: " + verfahren + "\r\n")});
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse())), Transport::Ergebnis(Netzantwort{401, daten}));
        QCOMPARE(server.verbindungen(), 1);
    }

    void kaputteAntworten_data()
    {
        QTest::addColumn<Schritt>("schritt");
        QTest::addColumn<QString>("text");
        const auto zeile = [](const char *name, const QString &text, const Schritt &schritt) {
            QTest::newRow(name) << schritt << text;
        };
        const QByteArray zehn = "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n";
        zeile("closes without an answer", unterbrochen, {});
        zeile("closes before the request", unterbrochen, {.ungefragt = true});
        zeile("resets instead of answering", unterbrochen, {.ende = Ende::Abbrechen});
        zeile("resets before the request", unterbrochen,
              {.ende = Ende::Abbrechen, .ungefragt = true});
        zeile("half a status line", unterbrochen, {.bytes = "HTTP/1.1 20"});
        zeile("half the header lines", unterbrochen, {.bytes = "HTTP/1.1 200 OK\r\nContent-Le"});
        zeile("half a body", unterbrochen, {.bytes = zehn + "abc"});
        zeile("half a body, then reset", unterbrochen,
              {.bytes = zehn + "abc", .ende = Ende::Abbrechen});
        zeile("no body at all", unterbrochen, {.bytes = zehn});
        zeile("half the body of a 500", unterbrochen,
              {.bytes = "HTTP/1.1 500 x\r\nContent-Length: 10\r\n\r\nabc"});
        zeile("half a chunk", unterbrochen, {.bytes = stueckweise + "5\r\nhe"});
        zeile("no last chunk", unterbrochen, {.bytes = stueckweise + "5\r\nhello\r\n"});
        zeile("half the last chunk", unterbrochen, {.bytes = stueckweise + "5\r\nhello\r\n0\r\n"});
        zeile("no chunk at all", unterbrochen, {.bytes = stueckweise});
        zeile("garbage for a status line", unverstaendlich, {.bytes = "garbage garbage\r\n\r\n"});
        zeile("garbage, left open", unverstaendlich,
              {.bytes = "garbage garbage\r\n\r\n", .ende = Ende::Offenlassen});
        zeile("header line without colon", unverstaendlich,
              {.bytes = "HTTP/1.1 200 OK\r\nrubbish\r\nContent-Length: 2\r\n\r\n{}"});
        zeile("no number for the size of a chunk", unverstaendlich,
              {.bytes = stueckweise + "zz\r\n{}\r\n0\r\n\r\n"});
        zeile("a negative size of a chunk", unverstaendlich,
              {.bytes = stueckweise + "-2\r\n{}\r\n0\r\n\r\n"});
        zeile("a size beyond all numbers", unverstaendlich,
              {.bytes = stueckweise + "ffffffffffffffffffffff\r\n{}\r\n0\r\n\r\n"});
        zeile("more than the size of a chunk", unverstaendlich,
              {.bytes = stueckweise + "2\r\n{}xx\r\n0\r\n\r\n"});
        zeile("two layers of gzip", unverstaendlich,
              {.bytes = kodiert("gzip, gzip", gzip(gzip("{}")))});
        zeile("two layers, a line each", unverstaendlich,
              {.bytes = Rohserver::antwort(
                   200, gzip(gzip("{}")), "Content-Encoding: gzip\r\nContent-Encoding: gzip\r\n")});
        zeile("gzip for the transfer", unverstaendlich,
              {.bytes = "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip\r\n\r\n" + gzip("{}")});
        zeile(
            "a header line of 9 KiB", unverstaendlich,
            {.bytes = Rohserver::antwort(200, "{}", "X-A: " + QByteArray(9 * 1024, 'a') + "\r\n")});
        zeile("a status line of 9 KiB", unverstaendlich,
              {.bytes = "HTTP/1.1 200 " + QByteArray(9 * 1024, 'a') + "\r\n\r\n"});
        zeile("300 KiB of header lines", unverstaendlich,
              {.bytes = Rohserver::antwort(
                   200, "{}", ("X-A: " + QByteArray(1017, 'a') + "\r\n").repeated(300))});
        zeile("header lines without end", unverstaendlich,
              {.bytes = "HTTP/1.1 200 OK\r\n", .endlos = "X-Zeile: x\r\n"});
        zeile("a header line without end", unverstaendlich,
              {.bytes = "HTTP/1.1 200 OK\r\nX-A: ", .endlos = QByteArray(10000, 'a')});
        zeile("a status line without end", unverstaendlich,
              {.bytes = "HTTP/1.1 200 ", .endlos = QByteArray(10000, 'a')});
        zeile("100 without end", unverstaendlich, {.endlos = "HTTP/1.1 100 Continue\r\n\r\n"});
        zeile("a blank before the colon", unverstaendlich,
              {.bytes =
                   "HTTP/1.1 200 OK\r\nTransfer-Encoding : chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n"});
        zeile("a status line in small letters", unverstaendlich,
              {.bytes = "http/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}"});
        zeile("a status line that is spelt wrong", unverstaendlich,
              {.bytes = "HTtP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}"});
        zeile("an interim answer, then one that is spelt wrong", unterbrochen,
              {.bytes = "HTTP/1.1 102 x\r\n\r\nHTtP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}"});
        zeile("a word for a status", unverstaendlich, {.bytes = "HTTP/1.1 abc OK\r\n\r\n"});
        zeile("status 2", unverstaendlich, {.bytes = Rohserver::antwort(2)});
        zeile("status 101", unverstaendlich, {.bytes = Rohserver::antwort(101)});
        zeile("status 99999", unverstaendlich, {.bytes = Rohserver::antwort(99999)});
        zeile("gzip cut short", unverstaendlich,
              {.bytes = kodiert("gzip", gzip("hallo").chopped(9))});
        zeile("gzip cut off by the connection", unterbrochen,
              {.bytes = kodiert("gzip", gzip("hallo")).chopped(9)});
        zeile("gzip that is none", unverstaendlich, {.bytes = kodiert("gzip", "hallo")});
        zeile("unknown coding", unverstaendlich, {.bytes = kodiert("br", "hallo")});
    }
    // Each is a failure at once, and the request has reached the server once, not again.
    void kaputteAntworten()
    {
        QFETCH(Schritt, schritt);
        QFETCH(QString, text);
        for (const bool mitBody : {false, true}) {
            for (const QString &host : {u"127.0.0.1"_s, u"localhost"_s}) {
                Rohserver server;
                server.sonst(schritt);
                const QString adresse = u"http://%1:%2"_s.arg(host).arg(server.port());
                Netzwelt welt;
                welt.holen(mitBody ? post(adresse) : get(adresse));
                if (schritt.ungefragt && schritt.ende == Ende::Abbrechen) {
                    // It may come while the connection is being made.
                    QVERIFY2(!*welt.ergebnis && !welt.zeitUeberschritten(),
                             qPrintable(welt.fehler()));
                } else {
                    QCOMPARE(welt.fehler(), text);
                }
                const auto bytes = server.empfangen();
                QVERIFY(bytes.size() - bytes.count(QByteArray()) <= 1);
                if (!schritt.ungefragt) {
                    QCOMPARE(server.befragt(), 1);
                }
            }
        }
    }

    // The server has the request and may be at work on it.
    void einWechselDesProtokollsIstEineAntwort()
    {
        Rohserver server;
        server.sonst({.bytes = Rohserver::antwort(101)});
        Netzwelt welt;
        const auto ergebnis = welt.holen(post(server.adresse()));
        QVERIFY(!ergebnis && ergebnis.error().beantwortet);
        server.sonst({.bytes = "unsinn\r\n\r\n"});
        Netzwelt zweite;
        const auto anderes = zweite.holen(post(server.adresse()));
        QVERIFY(!anderes && !anderes.error().beantwortet);
    }

    void zuGrosseAntworten_data()
    {
        QTest::addColumn<Schritt>("schritt");
        constexpr qsizetype grenze = qsizetype{64} * 1024 * 1024;
        QTest::newRow("announced")
            << Schritt{.bytes = Rohserver::antwort(200, QByteArray(grenze + 1, 'x'))};
        QTest::newRow("without end")
            << Schritt{.bytes = "HTTP/1.1 200 OK\r\n\r\n", .endlos = QByteArray(100000, 'x')};
        const QByteArray bombe = kodiert("gzip", gzip(QByteArray(1000000, 'x')).repeated(70));
        QTest::newRow("gzip bomb") << Schritt{.bytes = bombe};
    }
    void zuGrosseAntworten()
    {
        QFETCH(Schritt, schritt);
        Rohserver server;
        server.sonst(schritt);
        Netzwelt welt;
        welt.holen(get(server.adresse()));
        QCOMPARE(welt.fehler(), zuGross);
        QTRY_COMPARE(server.offen(), 0);
    }

    void genauAnDerGrenze()
    {
        const QByteArray daten(qsizetype{64} * 1024 * 1024, 'x');
        Rohserver server;
        server.sonst({.bytes = Rohserver::antwort(200, daten)});
        Netzwelt welt;
        const auto ergebnis = welt.holen(get(server.adresse()));
        QVERIFY(ergebnis);
        QVERIFY(ergebnis->daten == daten);
    }
};

KALVARO_TEST(TestNetztransport)
#include "tst_netztransport.moc"
