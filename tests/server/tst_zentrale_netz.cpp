// The client over the real network code against a real server: order and bytes of what it sends.

#include "doubles/rohserver.h"
#include "doubles/testuhr.h"
#include "server/netztransport.h"
#include "testlauf.h"

#include "zentralewelt.h"

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// A request as it must arrive, byte for byte.
QByteArray bytes(const Rohserver &server, const QByteArray &zeile, const QByteArray &body = {})
{
    return zeile + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(server.port()) +
           "\r\nAccept: */*\r\n"
           "Connection: close\r\n"
           "Accept-Encoding: gzip, deflate\r\n"
           "Accept-Language: de\r\n"
           "User-Agent: kalvaro/1.4\r\n"
           "X-Schluessel: geheim\r\n" +
           (body.isEmpty() ? QByteArray()
                           : "Content-Type: application/json\r\nContent-Length: " +
                                 QByteArray::number(body.size()) + "\r\n") +
           "\r\n" + body;
}

const Auftrag abgleich{.pfad = u"/api/abgleich"_s,
                       .methode = "POST",
                       .body = QJsonObject{{u"anlass"_s, u"hand"_s}, {u"geraet"_s, u"mac1"_s}},
                       .zeit = Sekunden(480)};
const QByteArray abgleichBody = "{\"anlass\":\"hand\",\"geraet\":\"mac1\"}";
const Auftrag stand{.pfad = u"/api/stand?geraet=mac%201"_s, .zeit = Sekunden(8)};

} // namespace

class TestZentraleNetz final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reihenfolgeUndBytes()
    {
        Rohserver weg;
        weg.verweigern();
        Rohserver server;
        server.dann(Rohserver::antwort(404, "gibt es nicht"));
        server.dann(Rohserver::antwort(200, "{\"betrieb\":\"scharf\"}"));
        server.dann(Rohserver::antwort(200, "[]"));
        Zentrale zentrale(konto({weg.adresse(), server.adresse()}), transport);
        Zentralewelt welt;
        QCOMPARE(welt.holen(zentrale, abgleich),
                 Zentrale::Antwort(QJsonObject{{u"betrieb"_s, u"scharf"_s}}));
        QVERIFY(welt.holen(zentrale, stand));
        QCOMPARE(server.empfangen(), (QList{bytes(server, "GET /api/status"),
                                            bytes(server, "POST /api/abgleich", abgleichBody),
                                            bytes(server, "GET /api/stand?geraet=mac%201")}));
        QCOMPARE(weg.verbindungen(), 0);
        QCOMPARE(zentrale.basis(), server.adresse());
    }

    // The account key stays with the server it is for.
    void umleitungAufEinenAnderenPort()
    {
        Rohserver falle;
        Rohserver server;
        server.dann(Rohserver::antwort(200));
        server.dann(Rohserver::umleitung(302, falle.adresse() + u"/api/abgleich"_s));
        Zentrale zentrale(konto({server.adresse(), falle.adresse()}), transport);
        Zentralewelt welt;
        QCOMPARE(welt.holen(zentrale, abgleich),
                 fehler(false, false, u"Die Cloud antwortet mit 302."_s));
        QCOMPARE(falle.verbindungen(), 0);
    }

    // A sync is asked for once, even of a server that takes the request and hangs up.
    void auflegenLaesstNichtNocheinmalFragen()
    {
        Rohserver server;
        server.dann(Rohserver::antwort(200));
        server.sonst({});
        Zentrale zentrale(konto({server.adresse()}), transport);
        Zentralewelt welt;
        QCOMPARE(welt.holen(zentrale, abgleich),
                 fehler(true, false, u"Die Verbindung wurde unterbrochen."_s));
        QCOMPARE(server.befragt(), 2);
        QCOMPARE(server.empfangen().at(1), bytes(server, "POST /api/abgleich", abgleichBody));
    }

    // Behind a reverse proxy: interim answers while the server syncs. The same sync was asked of
    // the next address.
    void zwischenantwortenFuehrenZuKeinerZweitenFrage()
    {
        Rohserver andere;
        Rohserver server;
        server.dann(Rohserver::antwort(200));
        server.dann(QByteArray("HTTP/1.1 102 Processing\r\n\r\nHTTP/1.1 103 x\r\n\r\n") +
                    Rohserver::antwort(200, "{\"a\":1}"));
        server.dann(Rohserver::antwort(101));
        Zentrale zentrale(konto({server.adresse(), andere.adresse()}), transport);
        Zentralewelt welt;
        QCOMPARE(welt.holen(zentrale, abgleich), Zentrale::Antwort(QJsonObject{{u"a"_s, 1}}));
        Zentralewelt zweite;
        QCOMPARE(zweite.holen(zentrale, abgleich),
                 fehler(false, false, u"Der Server antwortet nicht verständlich."_s));
        QCOMPARE(server.verbindungen(), 3);
        QCOMPARE(andere.verbindungen(), 0);
    }

    void eineAntwortMitZuVielenWertenIstZuGross()
    {
        Rohserver server;
        server.dann(Rohserver::antwort(200));
        server.dann(Rohserver::antwort(200, '[' + QByteArray("[1],").repeated(3'000'000) + "1]"));
        Zentrale zentrale(konto({server.adresse()}), transport);
        Zentralewelt welt;
        QCOMPARE(welt.holen(zentrale, stand),
                 fehler(true, false, u"Die Antwort der Cloud ist zu groß."_s));
    }

    void naechsteAdresseNachEinerOhneSchema()
    {
        Rohserver server;
        Zentrale zentrale(konto({u"127.0.0.1"_s, u"file:///etc"_s, server.adresse()}), transport);
        Zentralewelt welt;
        QVERIFY(welt.holen(zentrale, stand));
        QCOMPARE(server.verbindungen(), 2);
    }

    void zeilenumbruchImSchluessel()
    {
        Rohserver server;
        Konto k = konto({server.adresse()});
        k.schluessel = u"geheim\r\nX-Mehr: 1"_s;
        Zentrale zentrale(k, transport);
        Zentralewelt welt;
        QCOMPARE(welt.holen(zentrale, stand),
                 fehler(true, false, u"Der Schlüssel enthält unzulässige Zeichen."_s));
        QCOMPARE(server.verbindungen(), 0);
    }

    // A probe that hangs gives way to the next address after four seconds.
    void vorfrageHaengt()
    {
        Rohserver stumm;
        stumm.sonst({.ende = Rohserver::Ende::Offenlassen});
        Rohserver server;
        Zentrale zentrale(konto({stumm.adresse(), server.adresse()}), transport);
        Zentralewelt welt;
        welt.fragen(zentrale, stand);
        QTRY_VERIFY(!stumm.empfangen().value(0).isEmpty());
        uhr.vor(Sekunden(3.9));
        QCOMPARE(stumm.offen(), 1);
        uhr.vor(Sekunden(0.1));
        QTRY_COMPARE(welt.rufe, 1);
        QVERIFY(*welt.ergebnis);
        QTRY_COMPARE(stumm.offen(), 0);
        QCOMPARE(zentrale.basis(), server.adresse());
    }

    void zentraleGehtUnterwegs()
    {
        Rohserver server;
        server.dann(Rohserver::antwort(200));
        server.dann({.ende = Rohserver::Ende::Offenlassen});
        auto zentrale = std::make_unique<Zentrale>(konto({server.adresse()}), transport);
        Zentralewelt welt;
        welt.fragen(*zentrale, abgleich);
        QTRY_COMPARE(server.verbindungen(), 2);
        zentrale.reset();
        QTRY_COMPARE(server.offen(), 0);
        uhr.vor(Sekunden(1000));
        QCOMPARE(welt.rufe, 0);
    }

private:
    Testuhr uhr;
    Netztransport transport{uhr};
};

KALVARO_TEST(TestZentraleNetz)
#include "tst_zentrale_netz.moc"
