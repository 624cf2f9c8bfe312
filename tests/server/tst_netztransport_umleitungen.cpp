// Which redirects are followed, and what the next server gets to see.

#include "doubles/rohserver.h"
#include "testlauf.h"

#include "netzwelt.h"

#include <QHostAddress>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// The first line of what came on connection `nummer`.
QByteArray ersteZeile(const Rohserver &server, qsizetype nummer)
{
    const QByteArray bytes = server.empfangen().value(nummer);
    return bytes.left(bytes.indexOf('\r'));
}

} // namespace

class TestNetztransportUmleitungen final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verfolgt_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("methode");
        QTest::addColumn<QByteArray>("danach");
        const auto zeile = [](const char *name, int status, const char *methode,
                              const char *danach) {
            QTest::newRow(name) << status << QByteArray(methode) << QByteArray(danach);
        };
        zeile("301 of a GET", 301, "GET", "GET");
        zeile("301 of a POST becomes GET", 301, "POST", "GET");
        zeile("302 of a GET", 302, "GET", "GET");
        zeile("302 of a POST becomes GET", 302, "POST", "GET");
        zeile("302 of a PUT stays", 302, "PUT", "PUT");
        zeile("303 of a GET", 303, "GET", "GET");
        zeile("303 of a POST becomes GET", 303, "POST", "GET");
        zeile("303 of a PUT becomes GET", 303, "PUT", "GET");
        zeile("307 of a GET", 307, "GET", "GET");
        zeile("307 of a POST keeps method and body", 307, "POST", "POST");
        zeile("308 of a GET", 308, "GET", "GET");
        zeile("308 of a POST keeps method and body", 308, "POST", "POST");
    }
    void verfolgt()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, methode);
        QFETCH(QByteArray, danach);
        Rohserver server;
        server.dann(Rohserver::umleitung(status, server.adresse() + u"/neu?x=1"_s));
        Netzanfrage anfrage = methode == "GET" ? get(server.adresse()) : post(server.adresse());
        anfrage.methode = methode;
        anfrage.kopf = {Kopfzeile{"X-Schluessel", "geheim"},
                        Kopfzeile{"Content-Type", "application/json"}};
        Netzwelt welt;
        QCOMPARE(welt.holen(anfrage), Transport::Ergebnis(Netzantwort{200, "{}"}));
        QCOMPARE(server.verbindungen(), 2);
        QCOMPARE(ersteZeile(server, 1), danach + " /neu?x=1 HTTP/1.1");
        const QByteArray zweite = server.empfangen().at(1);
        QVERIFY(zweite.contains("\r\nX-Schluessel: geheim\r\n"));
        const bool behaelt = danach == methode && methode != "GET";
        QCOMPARE(zweite.endsWith("\r\n\r\n{\"a\":1}"), behaelt);
        if (danach != methode) {
            QVERIFY(!zweite.contains("Content-Type"));
            QVERIFY(!zweite.contains("Content-Length"));
        }
    }

    void ziele_data()
    {
        QTest::addColumn<QString>("ort");
        QTest::addColumn<QByteArray>("zeile");
        QTest::newRow("absolute path") << u"/x/y"_s << QByteArray("GET /x/y HTTP/1.1");
        QTest::newRow("relative path") << u"y"_s << QByteArray("GET /api/y HTTP/1.1");
        QTest::newRow("parent") << u"../y"_s << QByteArray("GET /y HTTP/1.1");
        QTest::newRow("query only") << u"?y=1"_s << QByteArray("GET /api/stand?y=1 HTTP/1.1");
        QTest::newRow("fragment is dropped") << u"/y#z"_s << QByteArray("GET /y HTTP/1.1");
    }
    void ziele()
    {
        QFETCH(QString, ort);
        Rohserver server;
        server.dann(Rohserver::umleitung(302, ort));
        Netzwelt welt;
        QVERIFY(welt.holen(get(server.adresse() + u"/api/stand?a=1"_s)));
        QTEST(ersteZeile(server, 1), "zeile");
    }

    void nichtVerfolgt_data()
    {
        QTest::addColumn<QString>("ort");
        QTest::newRow("other port of the same host") << u"http://127.0.0.1:%1/fang"_s;
        QTest::newRow("other name of the same machine") << u"http://localhost:%1/fang"_s;
        QTest::newRow("other host, without a scheme") << u"//localhost:%1/fang"_s;
        QTest::newRow("https on another host") << u"https://localhost:%1/fang"_s;
        QTest::newRow("key in front of the host") << u"http://127.0.0.1@localhost:%1/fang"_s;
        QTest::newRow("file") << u"file:///etc/passwd"_s;
        QTest::newRow("data") << u"data:application/json,{}"_s;
        QTest::newRow("ftp") << u"ftp://127.0.0.1:%1/"_s;
        QTest::newRow("no URL") << u"http://[kaputt"_s;
        QTest::newRow("empty") << QString();
    }
    // The other port never sees a connection, so it never sees the key.
    void nichtVerfolgt()
    {
        QFETCH(QString, ort);
        Rohserver falle;
        Rohserver server;
        server.sonst(
            {.bytes = Rohserver::umleitung(302, ort.contains(u'%') ? ort.arg(falle.port()) : ort)});
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse())), Transport::Ergebnis(Netzantwort{302, {}}));
        QCOMPARE(server.verbindungen(), 1);
        QCOMPARE(falle.verbindungen(), 0);
    }

    void keinOrtIstEineAntwort()
    {
        Rohserver server;
        server.sonst({.bytes = Rohserver::antwort(307, "{\"fehler\":\"umgezogen\"}")});
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse())),
                 Transport::Ergebnis(Netzantwort{307, "{\"fehler\":\"umgezogen\"}"}));
    }

    void ortOhneUmleitungIstEineAntwort()
    {
        Rohserver server;
        server.sonst({.bytes = Rohserver::umleitung(201, u"/neu"_s)});
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse())), Transport::Ergebnis(Netzantwort{201, {}}));
        QCOMPARE(server.verbindungen(), 1);
    }

    void schleifeEndet()
    {
        Rohserver server;
        server.sonst({.bytes = Rohserver::umleitung(302, u"/immerfort"_s)});
        Netzwelt welt;
        welt.holen(get(server.adresse()));
        QCOMPARE(welt.fehler(), u"Der Server leitet zu oft weiter."_s);
        QCOMPARE(server.verbindungen(), 11);
    }

    void zehnSpruengeSindErlaubt()
    {
        Rohserver server;
        for (int i = 0; i < 10; ++i) {
            server.dann(Rohserver::umleitung(307, u"/weiter"_s));
        }
        Netzwelt welt;
        QVERIFY(welt.holen(post(server.adresse())));
        QCOMPARE(server.verbindungen(), 11);
        QVERIFY(server.empfangen().at(10).endsWith("{\"a\":1}"));
    }

    // The body of a redirect is not part of the answer.
    void inhaltDerUmleitungVerschwindet()
    {
        Rohserver server;
        server.dann(Rohserver::antwort(302, "weiter", "Location: /neu\r\n"));
        Netzwelt welt;
        QCOMPARE(welt.holen(get(server.adresse())), Transport::Ergebnis(Netzantwort{200, "{}"}));
    }

    // One limit for all of it: a chain of redirects does not start it anew.
    void fristGiltFuerAlleSpruenge()
    {
        Rohserver server;
        Netzwelt welt;
        const QByteArray weiter = Rohserver::umleitung(302, u"/weiter"_s);
        server.dann({.bytes = weiter, .zuvor = [&] { welt.uhr.vor(Sekunden(15)); }});
        server.dann({.ende = Rohserver::Ende::Offenlassen});
        welt.senden(get(server.adresse()));
        QTRY_COMPARE(server.verbindungen(), 2);
        welt.uhr.vor(Sekunden(4.9));
        QVERIFY(!welt.ergebnis);
        welt.uhr.vor(Sekunden(0.1));
        QVERIFY(welt.zeitUeberschritten());
    }
};

KALVARO_TEST(TestNetztransportUmleitungen)
#include "tst_netztransport_umleitungen.moc"
