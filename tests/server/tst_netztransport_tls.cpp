// Who the server is, and that nobody reads along.

#include "doubles/rohserver.h"
#include "testlauf.h"

#include "netzwelt.h"
#include "tlsserver.h"

#include <QHostAddress>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

const QString unsicher = u"Es kam keine sichere Verbindung zustande."_s;

} // namespace

class TestNetztransportTls final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tls()
    {
        const Vertrauen vertrauen;
        Rohserver server(QHostAddress::LocalHost, tlsServer());
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse(u"https"_s))),
                 Transport::Ergebnis(Netzantwort{200, "{}", zertifikat().expiryDate()}));
        QVERIFY(zertifikat().expiryDate().isValid());
        QVERIFY(server.empfangen().at(0).startsWith("POST / HTTP/1.1\r\n"));
    }

    void tlsOhneAntwortErreichtDenServerNurEinmal()
    {
        const Vertrauen vertrauen;
        Rohserver server(QHostAddress::LocalHost, tlsServer());
        server.sonst({});
        Netzwelt welt;
        welt.holen(post(server.adresse(u"https"_s)));
        QCOMPARE(welt.fehler(), u"Die Verbindung wurde unterbrochen."_s);
        QCOMPARE(server.befragt(), 1);
    }

    // Nothing of the request leaves before the server has proved who it is.
    void selbstUnterschrieben()
    {
        Rohserver server(QHostAddress::LocalHost, tlsServer());
        Netzwelt welt;
        welt.holen(post(server.adresse(u"https"_s)));
        QCOMPARE(welt.ergebnis->error().art, Netzfehlerart::Aussteller);
        for (const QByteArray &bytes : server.empfangen()) {
            QVERIFY(!bytes.contains("geheim"));
        }
    }

    // One sentence for all of them left the user to guess.
    void jederMangelHatSeinenSatz_data()
    {
        QTest::addColumn<QByteArray>("der");
        QTest::addColumn<bool>("vertraut");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown issuer")
            << fuerHier << false
            << u"Dem Aussteller des Zertifikats der Cloud traut dieser Rechner nicht."_s;
        QTest::newRow("another name")
            << fuerAnders << true
            << u"Das Zertifikat der Cloud gilt für einen anderen Namen als „127.0.0.1“."_s;
        QTest::newRow("a common name beside foreign alternative names")
            << nurImBetreff << true
            << u"Das Zertifikat der Cloud gilt für einen anderen Namen als „127.0.0.1“."_s;
        QTest::newRow("over") << fuerDamals << true
                              << u"Das Zertifikat der Cloud ist am 01.01.2021 abgelaufen."_s;
        QTest::newRow("not yet")
            << fuerDereinst << true
            << u"Das Zertifikat der Cloud ist noch nicht gültig, erst ab dem 01.01.2119."_s;
    }
    void jederMangelHatSeinenSatz()
    {
        QFETCH(const QByteArray, der);
        QFETCH(const bool, vertraut);
        const Vertrauen vertrauen(vertraut ? der : fuerAnders);
        Rohserver server(QHostAddress::LocalHost, tlsServer(der));
        Netzwelt welt;
        welt.holen(post(server.adresse(u"https"_s)));
        QTEST(welt.fehler(), "text");
        QVERIFY(!welt.ergebnis->error().rat.isEmpty());
        QCOMPARE(server.empfangen().value(0), QByteArray());
    }

    // Without an announced length the end of the connection is the end of the answer, so it must be
    // the server that ends it.
    void ohneAbschiedIstDieAntwortNichtGanz()
    {
        const Vertrauen vertrauen;
        for (const auto ende : {Rohserver::Ende::Schliessen, Rohserver::Ende::Abbrechen}) {
            Rohserver server(QHostAddress::LocalHost, tlsServer());
            server.sonst({.bytes = "HTTP/1.1 200 OK\r\n\r\n{\"a\":1", .ende = ende});
            Netzwelt welt;
            const auto ergebnis = welt.holen(get(server.adresse(u"https"_s)));
            QCOMPARE(bool(ergebnis), ende == Rohserver::Ende::Schliessen);
        }
    }

    void tlsBeiEinemServerOhne()
    {
        Rohserver server;
        server.sonst({.bytes = "HTTP/1.1 400 Bad Request\r\n\r\n", .ungefragt = true});
        Netzwelt welt;
        welt.holen(get(server.adresse(u"https"_s)));
        QCOMPARE(welt.fehler(), unsicher);
        QVERIFY(!server.empfangen().at(0).contains("HTTP"));
    }

    void handschlagAbgebrochen()
    {
        Rohserver server;
        server.sonst({.ungefragt = true});
        Netzwelt welt;
        welt.holen(get(server.adresse(u"https"_s)));
        QCOMPARE(welt.fehler(), unsicher);
    }

    void umleitungVonHttpNachHttpsAmSelbenPort()
    {
        const Vertrauen vertrauen;
        std::unique_ptr<Rohserver> sicher;
        Rohserver server;
        const QString ziel = server.adresse(u"https"_s) + u"/y"_s;
        server.dann({.bytes = Rohserver::umleitung(308, ziel), .zuvor = [&] {
                         server.verweigern();
                         sicher = std::make_unique<Rohserver>(QHostAddress::LocalHost, tlsServer(),
                                                              server.port());
                     }});
        Netzwelt welt;
        QVERIFY(welt.holen(post(server.adresse())));
        QVERIFY(sicher->empfangen().at(0).startsWith("POST /y HTTP/1.1\r\n"));
        QVERIFY(sicher->empfangen().at(0).contains("\r\nX-Schluessel: geheim\r\n"));
    }

    // It is another service there, perhaps somebody else's.
    void keineUmleitungNachHttpsAnEinemAnderenPort()
    {
        const Vertrauen vertrauen;
        Rohserver sicher(QHostAddress::LocalHost, tlsServer());
        Rohserver server;
        server.dann(Rohserver::umleitung(308, sicher.adresse(u"https"_s) + u"/y"_s));
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse())), Transport::Ergebnis(Netzantwort{308, {}}));
        QCOMPARE(sicher.verbindungen(), 0);
    }

    void umleitungVonHttpsNachHttp()
    {
        const Vertrauen vertrauen;
        Rohserver falle;
        Rohserver sicher(QHostAddress::LocalHost, tlsServer());
        sicher.sonst({.bytes = Rohserver::umleitung(302, falle.adresse() + u"/y"_s)});
        Netzwelt welt;
        QCOMPARE(welt.holen(post(sicher.adresse(u"https"_s))),
                 Transport::Ergebnis(Netzantwort{302, {}, zertifikat().expiryDate()}));
        QCOMPARE(falle.verbindungen(), 0);
    }
};

KALVARO_TEST(TestNetztransportTls)
#include "tst_netztransport_tls.moc"
