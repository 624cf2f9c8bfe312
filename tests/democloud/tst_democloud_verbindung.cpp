#include "abruf.h"
#include "testlauf.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTest>

#include <vector>

using namespace kalvaro::democloud;
using namespace Qt::StringLiterals;

// The server on the wire: ports, its end, and clients that keep to no rule.
class TestDemocloudVerbindung : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void lauschtNurAufLoopback();
    void belegterPort();
    void nachDemEndeNiemandDa();
    void zweiterStartAufDemselbenPort();
    void startUndEndeSindWiederholbar();
    void endeWaehrendEinesAbgleichs();
    void endeTrotzStillerVerbindungen();
    void endeWennNiemandDieAntwortLiest();
    void unverstaendlich_data();
    void unverstaendlich();
    void ablehnungKommtAuchNachGrossemInhalt();
    void langeAdresseMitInhalt();
    void postOhneLaengeHaengtNicht();
    void eineAnfrageJeVerbindung();
    void inhaltInStuecken();
    void grosseAuswahl();
    void grosseListeOhneKomprimieren();
    void viele();

private:
    // Sends bytes and returns all that comes back until the server closes.
    [[nodiscard]] QByteArray roh(const QByteArray &anfrage) const;
    [[nodiscard]] std::unique_ptr<QTcpSocket> verbunden() const;

    std::unique_ptr<Democloud> cloud_;
    std::unique_ptr<Abruf> abruf_;
};

namespace {

constexpr qint64 bruchteil = 900; // ms within which the cloud ends
constexpr int frist = 20'000;     // ms before a test gives up

} // namespace

void TestDemocloudVerbindung::init()
{
    cloud_ = std::make_unique<Democloud>();
    QVERIFY(cloud_->starten().has_value());
    abruf_ = std::make_unique<Abruf>(cloud_->adresse());
}

void TestDemocloudVerbindung::cleanup()
{
    abruf_.reset();
    cloud_.reset();
}

std::unique_ptr<QTcpSocket> TestDemocloudVerbindung::verbunden() const
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(u"127.0.0.1"_s, static_cast<quint16>(cloud_->port()));
    return socket->waitForConnected(frist) ? std::move(socket) : nullptr;
}

QByteArray TestDemocloudVerbindung::roh(const QByteArray &anfrage) const
{
    const auto socket = verbunden();
    if (!socket) {
        return {};
    }
    socket->write(anfrage);
    return socket->state() == QAbstractSocket::UnconnectedState ||
                   socket->waitForDisconnected(frist)
               ? socket->readAll()
               : QByteArray();
}

void TestDemocloudVerbindung::lauschtNurAufLoopback()
{
    QVERIFY(cloud_->port() > 0);
    QCOMPARE(cloud_->adresse(), u"http://127.0.0.1:%1"_s.arg(cloud_->port()));
    // Every address 127.x.y.z reaches this host, but only the one is listened on.
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.2"_s, static_cast<quint16>(cloud_->port()));
    QVERIFY(!socket.waitForConnected(frist));
    QCOMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
}

void TestDemocloudVerbindung::belegterPort()
{
    Democloud zweite({.port = cloud_->port()});

    const auto begonnen = zweite.starten();

    QVERIFY(!begonnen.has_value());
    QCOMPARE(begonnen.error(),
             u"Port %1 ist auf 127.0.0.1 nicht zu bekommen (belegt oder nicht erlaubt)."_s.arg(
                 cloud_->port()));
}

void TestDemocloudVerbindung::nachDemEndeNiemandDa()
{
    cloud_->beenden();

    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 0);
}

void TestDemocloudVerbindung::zweiterStartAufDemselbenPort()
{
    const int port = cloud_->port();
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"abgeglichen"_s);

    cloud_->beenden();
    QVERIFY(cloud_->starten().has_value());

    QCOMPARE(cloud_->port(), port);
    QCOMPARE(zustandVon(abruf_->abgleichen()), u"aktuell"_s);
}

void TestDemocloudVerbindung::startUndEndeSindWiederholbar()
{
    QVERIFY(cloud_->starten().has_value());
    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 200);
    cloud_->beenden();
    cloud_->beenden();
    for (int i = 0; i < 20; ++i) {
        QVERIFY(cloud_->starten().has_value());
        cloud_->beenden();
    }
    const Democloud nieGestartet;
    QCOMPARE(nieGestartet.port(), 0);
}

void TestDemocloudVerbindung::endeWaehrendEinesAbgleichs()
{
    cloud_->setDauer(3600);
    const auto antwort = abruf_->abgleichSenden();
    QTRY_COMPARE(cloud_->laufendeAbgleiche(), 1);
    QElapsedTimer zeit;
    zeit.start();

    cloud_->beenden();

    QVERIFY(zeit.elapsed() < bruchteil);
    const Erhalten erhalten = Abruf::warten(*antwort);
    QCOMPARE(erhalten.status, 503);
    QCOMPARE(erhalten.fehler(), u"Die Cloud wird gerade beendet."_s);
    QVERIFY(!cloud_->welt().geraete[0].fuerGeraet.isEmpty());
}

void TestDemocloudVerbindung::endeTrotzStillerVerbindungen()
{
    const auto stumme = verbunden();
    const auto halbeZeile = verbunden();
    const auto halberInhalt = verbunden();
    QVERIFY(stumme && halbeZeile && halberInhalt);
    halbeZeile->write("GET /api/sta");
    halberInhalt->write("POST /api/abgleich HTTP/1.1\r\nX-Schluessel: demo-schluessel\r\n"
                        "Content-Length: 1000\r\n\r\n{");
    QVERIFY(halbeZeile->waitForBytesWritten(frist));
    QVERIFY(halberInhalt->waitForBytesWritten(frist));
    QCOMPARE(abruf_->holen(u"/api/status"_s).status, 200); // the others are accepted by now
    QElapsedTimer zeit;
    zeit.start();

    cloud_->beenden();

    QVERIFY(zeit.elapsed() < bruchteil);
}

void TestDemocloudVerbindung::endeWennNiemandDieAntwortLiest()
{
    cloud_->aendern(
        [](Welt &welt) { welt.playlisten = "[\"" + QByteArray(30'000'000, 'x') + "\"]"; });
    const auto socket = verbunden();
    QVERIFY(socket);
    socket->setReadBufferSize(1);
    socket->write("GET /api/playlisten HTTP/1.1\r\nX-Schluessel: demo-schluessel\r\n\r\n");
    QVERIFY(socket->waitForReadyRead(frist));
    QElapsedTimer zeit;
    zeit.start();

    cloud_->beenden();

    QVERIFY(zeit.elapsed() < bruchteil);
}

void TestDemocloudVerbindung::unverstaendlich_data()
{
    QTest::addColumn<QByteArray>("anfrage");
    QTest::addColumn<QByteArray>("anfang");
    QTest::addColumn<QString>("fehler");
    const QString unklar = u"Die Anfrage ist nicht verständlich."_s;
    QTest::newRow("Unsinn") << QByteArray("guten Tag\r\n\r\n") << QByteArray("HTTP/1.1 400 ")
                            << unklar;
    QTest::newRow("erfundene Methode")
        << QByteArray("HOLE /api/status HTTP/1.1\r\n\r\n") << QByteArray("HTTP/1.1 400 ") << unklar;
    QTest::newRow("überlange Adresse")
        << QByteArray("GET /" + QByteArray(10'000, 'a') + " HTTP/1.1\r\n\r\n")
        << QByteArray("HTTP/1.1 414 ") << u"Die Adresse der Anfrage ist zu lang."_s;
    QTest::newRow("zu großer Inhalt")
        << QByteArray("POST /api/abgleich HTTP/1.1\r\nX-Schluessel: demo-schluessel\r\n"
                      "Content-Length: 40000000\r\n\r\n" +
                      QByteArray(40'000'000, ' '))
        << QByteArray("HTTP/1.1 413 ") << u"Die Anfrage ist zu groß."_s;
}

void TestDemocloudVerbindung::unverstaendlich()
{
    QFETCH(const QByteArray, anfrage);
    QFETCH(const QByteArray, anfang);
    QFETCH(const QString, fehler);

    const QByteArray antwort = roh(anfrage);

    QCOMPARE(antwort.left(anfang.size()), anfang);
    const QByteArray inhalt = antwort.mid(antwort.indexOf("\r\n\r\n") + 4);
    QCOMPARE(Erhalten{.inhalt = inhalt}.fehler(), fehler);
}

void TestDemocloudVerbindung::ablehnungKommtAuchNachGrossemInhalt()
{
    const QByteArray inhalt(100'000, ' ');

    const QByteArray antwort =
        roh("POST /api/abgleich HTTP/1.1\r\nContent-Length: " + QByteArray::number(inhalt.size()) +
            "\r\n\r\n" + inhalt);

    QVERIFY(antwort.startsWith("HTTP/1.1 401 "));
    QVERIFY(antwort.endsWith("{\"fehler\":\"Der Schlüssel fehlt.\"}"));
}

// The library matches the address against an expression, which takes stack for each character.
void TestDemocloudVerbindung::langeAdresseMitInhalt()
{
    const QByteArray antwort =
        roh("POST /" + QByteArray(8000, 'a') + " HTTP/1.1\r\nContent-Length: 2\r\n\r\n{}");

    QVERIFY(antwort.startsWith("HTTP/1.1 404 "));
    QVERIFY(antwort.endsWith("{\"fehler\":\"Diese Adresse gibt es in der Cloud nicht.\"}"));
}

// The library on its own would wait for a body until its time limit, and then not understand.
void TestDemocloudVerbindung::postOhneLaengeHaengtNicht()
{
    const QByteArray antwort =
        roh("POST /api/abgleich HTTP/1.1\r\nX-Schluessel: demo-schluessel\r\n\r\n");

    QVERIFY(antwort.startsWith("HTTP/1.1 400 "));
    QVERIFY(antwort.contains("Der Inhalt der Anfrage ist kein gültiges JSON."));
}

void TestDemocloudVerbindung::eineAnfrageJeVerbindung()
{
    const QByteArray antwort =
        roh("GET /api/status HTTP/1.1\r\nX-Schluessel: demo-schluessel\r\n\r\n");

    QVERIFY(antwort.startsWith("HTTP/1.1 200 "));
    QVERIFY(antwort.contains("\r\nConnection: close\r\n"));
}

void TestDemocloudVerbindung::inhaltInStuecken()
{
    const QByteArray inhalt = Abruf::abgleichInhalt(u"demo-mac"_s, u"hand"_s);

    const QByteArray antwort =
        roh("POST /api/abgleich HTTP/1.1\r\nX-Schluessel: demo-schluessel\r\n"
            "Transfer-Encoding: chunked\r\n\r\n" +
            QByteArray::number(inhalt.size(), 16) + "\r\n" + inhalt + "\r\n0\r\n\r\n");

    QVERIFY(antwort.startsWith("HTTP/1.1 200 "));
    QVERIFY(antwort.contains("\"zustand\":\"abgeglichen\""));
}

void TestDemocloudVerbindung::grosseAuswahl()
{
    QJsonArray uuids;
    for (int i = 0; i < 100'000; ++i) {
        uuids.append(QString::number(i).rightJustified(36, u'0'));
    }
    const QByteArray inhalt =
        QJsonDocument(QJsonObject{{u"geraet"_s, u"demo-mac"_s}, {u"lokal"_s, uuids}}).toJson();

    QCOMPARE(abruf_->fragen("POST", u"/api/einstellungen"_s, inhalt).status, 200);

    QCOMPARE(abruf_->holen(u"/api/playlisten"_s).json().value(u"lokal"_s).toArray(), uuids);
}

// The client offers brotli, with which the library once took half a minute for such a list.
void TestDemocloudVerbindung::grosseListeOhneKomprimieren()
{
    const QByteArray liste = "[\"" + QByteArray(20'000'000, 'x') + "\"]";
    cloud_->aendern([&](Welt &welt) { welt.playlisten = liste; });

    const auto antwort = abruf_->senden("GET", u"/api/playlisten"_s);

    QCOMPARE(Abruf::warten(*antwort).status, 200);
    QVERIFY(cloud_->anfragen().first().kopfzeile("Accept-Encoding").contains("gzip"));
    QVERIFY(antwort->header(QNetworkRequest::ContentLengthHeader).toLongLong() > liste.size());
}

void TestDemocloudVerbindung::viele()
{
    constexpr int anzahl = 100;
    std::vector<std::unique_ptr<QNetworkReply>> antworten;
    antworten.reserve(anzahl);
    for (int i = 0; i < anzahl; ++i) {
        antworten.push_back(abruf_->senden("GET", u"/api/stand?geraet=demo-mac"_s));
    }
    for (const auto &antwort : antworten) {
        QCOMPARE(Abruf::warten(*antwort).status, 200);
    }
    QCOMPARE(cloud_->anfragen().size(), anzahl);
}

KALVARO_TEST(TestDemocloudVerbindung)
#include "tst_democloud_verbindung.moc"
