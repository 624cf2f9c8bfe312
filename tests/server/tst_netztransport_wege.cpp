// The way to the server: addresses, proxies, TLS.

#include "doubles/rohserver.h"
#include "testlauf.h"

#include "netzwelt.h"

#include <QHostAddress>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

// A certificate that signs itself, for 127.0.0.1 and localhost, 2020 to 2120, and its key. They
// serve this test alone.
const QByteArray zertifikat =
    "MIIBbjCCAROgAwIBAgIBATAKBggqhkjOPQQDAjAXMRUwEwYDVQQDDAxrYWx2YXJvLXRlc3Qw"
    "IBcNMjAwMTAxMDAwMDAwWhgPMjEyMDAxMDEwMDAwMDBaMBcxFTATBgNVBAMMDGthbHZhcm8t"
    "dGVzdDBZMBMGByqGSM49AgEGCCqGSM49AwEHA0IABIsD8OnrnTOhX87alkXOr1O09RvXtiWu"
    "yxWjIRzxNi3CdoWblkiHr3tmarCdrAfSDfs/fAGSVZrbR+4Uu7WY4lWjTjBMMBoGA1UdEQQT"
    "MBGHBH8AAAGCCWxvY2FsaG9zdDAPBgNVHRMBAf8EBTADAQH/MB0GA1UdDgQWBBRnbD8wSTeD"
    "GjyutVexfjWeNCtE3TAKBggqhkjOPQQDAgNJADBGAiEAushi7igWUjoWgPCuyFf5DrvMBCBb"
    "ornpkSyQaW3HLbQCIQCFJaT3UYMXWhFRMXdsipjF/YzH2Bg/bxZ3q4ClBNY2uw==";
const QByteArray schluessel =
    "MHcCAQEEIBLAVysSJOf/uFHWDcRWOBeDuwj6Uu07/1yAdwqTrCFUoAoGCCqGSM49AwEHoUQDQgAE"
    "iwPw6eudM6FfztqWRc6vU7T1G9e2Ja7LFaMhHPE2LcJ2hZuWSIeve2ZqsJ2sB9IN+z98AZJVmttH"
    "7hS7tZjiVQ==";

QSslCertificate eigenesZertifikat()
{
    return QSslCertificate(QByteArray::fromBase64(zertifikat), QSsl::Der);
}

std::unique_ptr<QTcpServer> tlsServer()
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(eigenesZertifikat());
    // It would rather speak HTTP/2.
    tls.setAllowedNextProtocols(
        {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
    tls.setPrivateKey(QSslKey(QByteArray::fromBase64(schluessel), QSsl::Ec, QSsl::Der));
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(tls);
    return server;
}

// Trusts the certificate for as long as it lives.
class Vertrauen
{
public:
    Vertrauen()
    {
        QSslConfiguration mit = vorher;
        mit.addCaCertificate(eigenesZertifikat());
        QSslConfiguration::setDefaultConfiguration(mit);
    }
    ~Vertrauen() { QSslConfiguration::setDefaultConfiguration(vorher); }
    Vertrauen(const Vertrauen &) = delete;
    Vertrauen &operator=(const Vertrauen &) = delete;

private:
    const QSslConfiguration vorher = QSslConfiguration::defaultConfiguration();
};

const QString unsicher = u"Es kam keine sichere Verbindung zustande."_s;

} // namespace

class TestNetztransportWege final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        stellvertreter = std::make_unique<Rohserver>();
        qputenv("http_proxy", stellvertreter->adresse().toLatin1());
        qputenv("https_proxy", stellvertreter->adresse().toLatin1());
        qunsetenv("no_proxy");
    }

    void init() { vorher = stellvertreter->verbindungen(); }

    void ipv6()
    {
        Rohserver server(QHostAddress::LocalHostIPv6);
        Netzwelt welt;
        QVERIFY(welt.holen(get(server.adresse() + u"/x"_s)));
        QVERIFY(server.empfangen().at(0).contains(
            "\r\nHost: [::1]:" + QByteArray::number(server.port()) + "\r\n"));
    }

    void ohneWeg_data()
    {
        QTest::addColumn<QString>("adresse");
        QTest::addColumn<QString>("text");
        const QString schema = u"Die Adresse beginnt weder mit „http://“ noch mit „https://“."_s;
        const QString niemand = u"Der Server wurde nicht gefunden."_s;
        QTest::newRow("ftp") << u"ftp://127.0.0.1/x"_s << schema;
        QTest::newRow("file") << u"file:///etc/hostname"_s << schema;
        QTest::newRow("data") << u"data:application/json,{}"_s << schema;
        QTest::newRow("qrc") << u"qrc:/x"_s << schema;
        QTest::newRow("no scheme") << u"127.0.0.1/x"_s << schema;
        QTest::newRow("name and port for a scheme") << u"cloud.example:8080/x"_s << schema;
        QTest::newRow("nothing but a path") << u"/api/status"_s << schema;
        QTest::newRow("no host") << u"http:///api/status"_s << niemand;
        QTest::newRow("refused") << u"http://127.0.0.1:1/x"_s
                                 << u"Die Verbindung wurde abgelehnt."_s;
        QTest::newRow("refused, IPv6")
            << u"http://[::1]:1/x"_s << u"Die Verbindung wurde abgelehnt."_s;
    }
    void ohneWeg()
    {
        QFETCH(QString, adresse);
        QFETCH(QString, text);
        Netzwelt welt;
        welt.holen(get(adresse));
        QCOMPARE(welt.fehler(), text);
        QCOMPARE(stellvertreter->verbindungen(), vorher);
    }

    void unbekannterName()
    {
        qunsetenv("http_proxy");
        Netzwelt welt;
        welt.holen(get(u"http://gibt-es-nicht.invalid/x"_s));
        qputenv("http_proxy", stellvertreter->adresse().toLatin1());
        QCOMPARE(welt.fehler(), u"Der Server wurde nicht gefunden."_s);
    }

    // A header value that would bring header lines of its own never leaves.
    void zeilenumbruchImSchluessel_data()
    {
        QTest::addColumn<QByteArray>("wert");
        QTest::newRow("line feed") << QByteArray("geheim\nX-Mehr: 1");
        QTest::newRow("carriage return and line feed") << QByteArray("geheim\r\nX-Mehr: 1");
        QTest::newRow("carriage return") << QByteArray("geheim\rX-Mehr: 1");
        QTest::newRow("at the end") << QByteArray("geheim\n");
        QTest::newRow("zero") << QByteArray("geheim\0", 7);
        QTest::newRow("delete") << QByteArray("geheim\x7f");
    }
    void zeilenumbruchImSchluessel()
    {
        QFETCH(QByteArray, wert);
        Rohserver server;
        Netzanfrage anfrage = get(server.adresse());
        anfrage.kopf = {Kopfzeile{"X-Schluessel", wert}};
        Netzwelt welt;
        welt.holen(anfrage);
        QCOMPARE(welt.fehler(), u"Der Schlüssel enthält unzulässige Zeichen."_s);
        anfrage.kopf = {Kopfzeile{wert, "x"}};
        Netzwelt zweite;
        QVERIFY(!zweite.holen(anfrage));
        QCOMPARE(server.verbindungen(), 0);
    }

    void umlauteImSchluesselSindUtf8()
    {
        Rohserver server;
        Netzanfrage anfrage = get(server.adresse());
        anfrage.kopf = {Kopfzeile{"X-Schluessel", u"schlüssel\tä"_s.toUtf8()}};
        Netzwelt welt;
        QVERIFY(welt.holen(anfrage));
        QVERIFY(
            server.empfangen().at(0).contains(u"\r\nX-Schluessel: schlüssel\tä\r\n"_s.toUtf8()));
    }

    void proxyFuerFremdeNamen()
    {
        Netzwelt welt;
        QVERIFY(welt.holen(get(u"http://cloud.invalid/x"_s)));
        QCOMPARE(stellvertreter->verbindungen(), vorher + 1);
        QVERIFY(stellvertreter->empfangen().last().startsWith(
            "GET http://cloud.invalid/x HTTP/1.1\r\n"));
    }

    void proxyTunneltTls()
    {
        stellvertreter->dann("HTTP/1.1 502 x\r\nContent-Length: 0\r\n\r\n");
        Netzwelt welt;
        QVERIFY(!welt.holen(get(u"https://cloud.invalid/x"_s)));
        QVERIFY(stellvertreter->empfangen().last().startsWith(
            "CONNECT cloud.invalid:443 HTTP/1.1\r\n"));
        QVERIFY(!stellvertreter->empfangen().last().contains("/x"));
    }

    void proxyVerlangtAnmeldung()
    {
        stellvertreter->dann(
            Rohserver::antwort(407, {}, "Proxy-Authenticate: Basic realm=\"x\"\r\n"));
        Netzwelt welt;
        welt.holen(get(u"http://cloud.invalid/x"_s));
        QCOMPARE(welt.fehler(), u"Der Proxy-Server verlangt eine Anmeldung."_s);
        QCOMPARE(stellvertreter->verbindungen(), vorher + 1);
    }

    void proxyWegErreichtIhnNurEinmal()
    {
        stellvertreter->dann(QByteArray());
        Netzwelt welt;
        const qsizetype befragt = stellvertreter->befragt();
        welt.holen(post(u"http://cloud.invalid/x"_s));
        QCOMPARE(welt.fehler(), u"Die Verbindung wurde unterbrochen."_s);
        QCOMPARE(stellvertreter->befragt(), befragt + 1);
    }

    void keinProxyFuerLoopback_data()
    {
        QTest::addColumn<QString>("host");
        QTest::newRow("127.0.0.1") << u"127.0.0.1"_s;
        QTest::newRow("elsewhere in 127/8") << u"127.1.2.3"_s;
        QTest::newRow("localhost") << u"localhost"_s;
        QTest::newRow("LOCALHOST") << u"LOCALHOST"_s;
    }
    void keinProxyFuerLoopback()
    {
        QFETCH(QString, host);
        Rohserver server(QHostAddress::AnyIPv4);
        Netzwelt welt;
        QVERIFY(welt.holen(get(u"http://%1:%2/x"_s.arg(host).arg(server.port()))));
        QCOMPARE(server.verbindungen(), 1);
        QCOMPARE(stellvertreter->verbindungen(), vorher);
    }

    void tls()
    {
        const Vertrauen vertrauen;
        Rohserver server(QHostAddress::LocalHost, tlsServer());
        Netzwelt welt;
        QCOMPARE(welt.holen(post(server.adresse(u"https"_s))),
                 Transport::Ergebnis(Netzantwort{200, "{}", eigenesZertifikat().expiryDate()}));
        QVERIFY(eigenesZertifikat().expiryDate().isValid());
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
        QCOMPARE(welt.fehler(), unsicher);
        for (const QByteArray &bytes : server.empfangen()) {
            QVERIFY(!bytes.contains("geheim"));
        }
    }

    void falscherName()
    {
        const Vertrauen vertrauen;
        Rohserver server(QHostAddress::AnyIPv4, tlsServer());
        Netzwelt welt;
        welt.holen(post(u"https://127.0.0.2:%1/"_s.arg(server.port())));
        QCOMPARE(welt.fehler(), unsicher);
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
        QCOMPARE(welt.fehler(), u"Die Verbindung wurde unterbrochen."_s);
    }

    void umleitungVonHttpNachHttps()
    {
        const Vertrauen vertrauen;
        Rohserver sicher(QHostAddress::LocalHost, tlsServer());
        Rohserver server;
        server.dann(Rohserver::umleitung(308, sicher.adresse(u"https"_s) + u"/y"_s));
        Netzwelt welt;
        QVERIFY(welt.holen(post(server.adresse())));
        QVERIFY(sicher.empfangen().at(0).startsWith("POST /y HTTP/1.1\r\n"));
        QVERIFY(sicher.empfangen().at(0).contains("\r\nX-Schluessel: geheim\r\n"));
    }

    void umleitungVonHttpsNachHttp()
    {
        const Vertrauen vertrauen;
        Rohserver falle;
        Rohserver sicher(QHostAddress::LocalHost, tlsServer());
        sicher.sonst({.bytes = Rohserver::umleitung(302, falle.adresse() + u"/y"_s)});
        Netzwelt welt;
        QCOMPARE(welt.holen(post(sicher.adresse(u"https"_s))),
                 Transport::Ergebnis(Netzantwort{302, {}, eigenesZertifikat().expiryDate()}));
        QCOMPARE(falle.verbindungen(), 0);
    }

private:
    std::unique_ptr<Rohserver> stellvertreter;
    qsizetype vorher = 0;
};

KALVARO_TEST(TestNetztransportWege)
#include "tst_netztransport_wege.moc"
