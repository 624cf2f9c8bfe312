// How an exchange ends when no answer ends it: by its limit or with its owner, in every state.

#include "doubles/ereignisse.h"
#include "doubles/rohserver.h"
#include "testlauf.h"

#include "netzwelt.h"

#include <QHostAddress>

using namespace kalvaro;
using namespace Qt::StringLiterals;
using Ende = Rohserver::Ende;
using Schritt = Rohserver::Schritt;

namespace {

// A port on which connecting takes for ever: its queue of pending connections is full.
class Warteschlange
{
public:
    Warteschlange()
    {
        server.setListenBacklogSize(1);
        server.listen(QHostAddress::LocalHost);
        server.pauseAccepting();
        for (int i = 0; i < 4; ++i) {
            voran.push_back(std::make_unique<QTcpSocket>());
            voran.back()->connectToHost(QHostAddress::LocalHost, server.serverPort());
        }
    }

    [[nodiscard]] bool voll() const
    {
        const auto verbunden = std::count_if(voran.begin(), voran.end(), [](const auto &leitung) {
            return leitung->state() == QAbstractSocket::ConnectedState;
        });
        return verbunden >= 2;
    }
    [[nodiscard]] QString adresse() const
    {
        return u"http://127.0.0.1:%1"_s.arg(server.serverPort());
    }

private:
    QTcpServer server;
    std::vector<std::unique_ptr<QTcpSocket>> voran;
};

const QByteArray angefangen = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc";

} // namespace

class TestNetztransportEnde final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fristBeimVerbinden()
    {
        Warteschlange schlange;
        QTRY_VERIFY(schlange.voll());
        Netzwelt welt;
        welt.senden(get(schlange.adresse()));
        welt.uhr.vor(Sekunden(19.9));
        QVERIFY(!welt.ergebnis);
        welt.uhr.vor(Sekunden(0.1));
        QVERIFY(welt.zeitUeberschritten());
        QCOMPARE(welt.rufe, 1);
    }

    void frist_data()
    {
        QTest::addColumn<Schritt>("schritt");
        QTest::newRow("hangs") << Schritt{.ende = Ende::Offenlassen};
        QTest::newRow("hangs after the status line")
            << Schritt{.bytes = "HTTP/1.1 200 OK\r\n", .ende = Ende::Offenlassen};
        QTest::newRow("hangs after the header lines") << Schritt{
            .bytes = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", .ende = Ende::Offenlassen};
        QTest::newRow("hangs within the body")
            << Schritt{.bytes = angefangen, .ende = Ende::Offenlassen};
        QTest::newRow("hangs within a chunk")
            << Schritt{.bytes = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nab",
                       .ende = Ende::Offenlassen};
        QTest::newRow("hangs after an interim answer")
            << Schritt{.bytes = "HTTP/1.1 102 x\r\n\r\n", .ende = Ende::Offenlassen};
    }
    void frist()
    {
        QFETCH(Schritt, schritt);
        Rohserver server;
        server.sonst(schritt);
        Netzwelt welt;
        Netzanfrage anfrage = post(server.adresse());
        anfrage.limit = Sekunden(480);
        welt.senden(anfrage);
        QTRY_VERIFY(!server.empfangen().value(0).isEmpty());
        welt.uhr.vor(Sekunden(479.9));
        QVERIFY(!welt.ergebnis);
        welt.uhr.vor(Sekunden(0.1));
        QVERIFY(welt.zeitUeberschritten());
        QTRY_COMPARE(server.offen(), 0);
        welt.uhr.vor(Sekunden(10000));
        QCOMPARE(welt.rufe, 1);
        QCOMPARE(server.verbindungen(), 1);
    }

    // A byte now and then does not prolong the limit.
    void troepfeln()
    {
        Rohserver server;
        server.sonst({.bytes = angefangen, .ende = Ende::Offenlassen});
        Netzwelt welt;
        welt.senden(get(server.adresse()));
        QTRY_VERIFY(!server.empfangen().value(0).isEmpty());
        for (int sekunde = 1; sekunde < 20; ++sekunde) {
            const qint64 bisher = server.gesendet();
            QVERIFY(server.schreiben("x"));
            QTRY_VERIFY(server.gesendet() > bisher);
            welt.uhr.vor(Sekunden(1));
            QVERIFY(!welt.ergebnis);
        }
        welt.uhr.vor(Sekunden(1));
        QVERIFY(welt.zeitUeberschritten());
        QTRY_COMPARE(server.offen(), 0);
    }

    // The same server, but it gets there in time.
    void troepfelnBisZumEnde()
    {
        Rohserver server;
        server.sonst({.ende = Ende::Offenlassen});
        Netzwelt welt;
        welt.senden(get(server.adresse()));
        QTRY_VERIFY(!server.empfangen().value(0).isEmpty());
        for (const char zeichen : Rohserver::antwort(200, "{}")) {
            const qint64 bisher = server.gesendet();
            server.schreiben(QByteArray(1, zeichen));
            QTRY_VERIFY(server.gesendet() > bisher);
            welt.uhr.vor(Sekunden(0.1));
        }
        QCOMPARE(welt.abwarten(), Transport::Ergebnis(Netzantwort{200, "{}"}));
        QCOMPARE(welt.uhr.offen(), 0);
    }

    void nieVorDerRueckkehr_data()
    {
        QTest::addColumn<QString>("adresse");
        QTest::newRow("unknown scheme") << u"ftp://127.0.0.1/"_s;
        QTest::newRow("no host") << u"http:///x"_s;
        QTest::newRow("refused") << u"http://127.0.0.1:1/"_s;
    }
    void nieVorDerRueckkehr()
    {
        QFETCH(QString, adresse);
        Netzwelt welt;
        welt.senden(get(adresse));
        QCOMPARE(welt.rufe, 0);
        welt.abwarten();
        welt.uhr.vor(Sekunden(1000));
        QCOMPARE(welt.rufe, 1);
    }

    void besitzerGehtVorDerEreignisschleife()
    {
        Rohserver server;
        Netzwelt welt;
        welt.senden(get(server.adresse()));
        welt.besitzer.reset();
        welt.uhr.vor(Sekunden(1000));
        QCOMPARE(welt.rufe, 0);
        QCOMPARE(welt.uhr.offen(), 0);
    }

    void besitzerGehtBeimVerbinden()
    {
        Warteschlange schlange;
        QTRY_VERIFY(schlange.voll());
        Netzwelt welt;
        welt.senden(get(schlange.adresse()));
        ereignisseAbarbeiten();
        welt.besitzer.reset();
        welt.uhr.vor(Sekunden(1000));
        QCOMPARE(welt.rufe, 0);
    }

    void besitzerGehtUnterwegs_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("while waiting for the answer") << QByteArray();
        QTest::newRow("while reading it") << angefangen;
    }
    void besitzerGehtUnterwegs()
    {
        QFETCH(QByteArray, bytes);
        Rohserver server;
        server.sonst({.bytes = bytes, .ende = Ende::Offenlassen});
        Netzwelt welt;
        welt.senden(post(server.adresse()));
        QTRY_VERIFY(!server.empfangen().value(0).isEmpty());
        QTRY_COMPARE(server.gesendet(), bytes.size());
        welt.besitzer.reset();
        QTRY_COMPARE(server.offen(), 0);
        welt.uhr.vor(Sekunden(1000));
        QCOMPARE(welt.rufe, 0);
    }

    void besitzerGehtInDerUmleitung()
    {
        Rohserver server;
        server.dann(Rohserver::umleitung(307, u"/weiter"_s));
        server.dann({.ende = Ende::Offenlassen});
        Netzwelt welt;
        welt.senden(post(server.adresse()));
        QTRY_VERIFY(!server.empfangen().value(1).isEmpty());
        welt.besitzer.reset();
        QTRY_COMPARE(server.offen(), 0);
        QCOMPARE(welt.rufe, 0);
    }

    void besitzerGehtImRueckruf_data()
    {
        QTest::addColumn<Schritt>("schritt");
        QTest::newRow("answer") << Schritt{.bytes = Rohserver::antwort(200, "{}")};
        QTest::newRow("cut off") << Schritt{};
        QTest::newRow("too large")
            << Schritt{.bytes = "HTTP/1.1 200 OK\r\n\r\n", .endlos = QByteArray(100000, 'x')};
        QTest::newRow("limit") << Schritt{.ende = Ende::Offenlassen};
    }
    void besitzerGehtImRueckruf()
    {
        QFETCH(Schritt, schritt);
        Rohserver server;
        server.sonst(schritt);
        Testuhr uhr;
        Netztransport transport(uhr);
        auto besitzer = std::make_unique<QObject>();
        int rufe = 0;
        Netzanfrage anfrage = get(server.adresse());
        anfrage.limit = Sekunden(20);
        transport.senden(anfrage, besitzer.get(), [&](const Transport::Ergebnis & /*e*/) {
            ++rufe;
            besitzer.reset();
        });
        QTRY_VERIFY(!server.empfangen().value(0).isEmpty());
        if (schritt.ende == Ende::Offenlassen) {
            uhr.vor(Sekunden(20));
        }
        QTRY_COMPARE(rufe, 1);
        QTRY_COMPARE(server.offen(), 0);
        QCOMPARE(uhr.offen(), 0);
    }

    // An exchange under way does not need the transport any more.
    void transportGehtZuerst()
    {
        Rohserver server;
        Netzwelt welt;
        welt.senden(get(server.adresse()));
        welt.transport.reset();
        QCOMPARE(welt.abwarten(), Transport::Ergebnis(Netzantwort{200, "{}"}));
    }

    void mehrereZugleich()
    {
        Rohserver server;
        server.dann({.ende = Ende::Offenlassen});
        Netzwelt langsam;
        Netzwelt schnell;
        langsam.senden(get(server.adresse()));
        QTRY_COMPARE(server.verbindungen(), 1);
        QVERIFY(schnell.holen(get(server.adresse())));
        QVERIFY(!langsam.ergebnis);
        QTRY_VERIFY(!server.empfangen().at(0).isEmpty());
        QVERIFY(server.schreiben(Rohserver::antwort(200, "[]")));
        QCOMPARE(langsam.abwarten(), Transport::Ergebnis(Netzantwort{200, "[]"}));
    }
};

KALVARO_TEST(TestNetztransportEnde)
#include "tst_netztransport_ende.moc"
