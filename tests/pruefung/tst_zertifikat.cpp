// A look at a certificate that is not accepted.

#include "pruefung/zertifikat.h"

#include "doubles/rohserver.h"
#include "doubles/testuhr.h"
#include "testlauf.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTimeZone>

#include <optional>

using namespace kalvaro;
using namespace Qt::StringLiterals;

namespace {

using Mangel = Zertifikat::Mangel;

// Certificates that sign themselves, DER, with one key. They serve this test alone.
const QByteArray schluessel =
    "MHcCAQEEIFAJZxlEpq6tZrV/BHbX/ludslxB/0AiS/+BaQDQfCq0oAoGCCqGSM49AwEHoUQDQgAEuAVO"
    "J9aM1P+ZDhRXjtidwi99j23Q9HPpaoxRRgcahS4FLom2hedySwawCRuZUIiWzfxGt6ySAuV16O23h+/i"
    "fA==";
// For 127.0.0.1, from 2020 to 2120.
const QByteArray fuerHier =
    "MIIBUDCB96ADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAgFw0yMDAx"
    "MDEwMDAwMDBaGA8yMTIwMDEwMTAwMDAwMFowFzEVMBMGA1UEAwwMa2FsdmFyby10ZXN0MFkwEwYHKoZI"
    "zj0CAQYIKoZIzj0DAQcDQgAEuAVOJ9aM1P+ZDhRXjtidwi99j23Q9HPpaoxRRgcahS4FLom2hedySwaw"
    "CRuZUIiWzfxGt6ySAuV16O23h+/ifKMyMDAwDwYDVR0RBAgwBocEfwAAATAdBgNVHQ4EFgQUXhhqJdIE"
    "mjdG8r3xcQSpAARySngwCgYIKoZIzj0EAwIDSAAwRQIhALZ/rjCTqq06wn3DCGU9aRD8+4/g+wsg+WBx"
    "qO1mIuhnAiAhoDmBQzfEF8PYrCtEE0EWHvGdY2LmGPxACaWfv9eOIA==";
// For a host called "anders", from 2020 to 2120.
const QByteArray fuerAnders =
    "MIIBUTCB+aADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAgFw0yMDAx"
    "MDEwMDAwMDBaGA8yMTIwMDEwMTAwMDAwMFowFzEVMBMGA1UEAwwMa2FsdmFyby10ZXN0MFkwEwYHKoZI"
    "zj0CAQYIKoZIzj0DAQcDQgAEuAVOJ9aM1P+ZDhRXjtidwi99j23Q9HPpaoxRRgcahS4FLom2hedySwaw"
    "CRuZUIiWzfxGt6ySAuV16O23h+/ifKM0MDIwEQYDVR0RBAowCIIGYW5kZXJzMB0GA1UdDgQWBBReGGol"
    "0gSaN0byvfFxBKkABHJKeDAKBggqhkjOPQQDAgNHADBEAiBA3pkYVx1lMQaEqum2OciKdCW42h/kR7Fu"
    "I1ydFnMVPQIgWPzSqkPRVIjw3hIYhrkAGJdUNgJKciIrieBliUAD3P8=";
// For 127.0.0.1, in 2020.
const QByteArray fuerDamals =
    "MIIBTzCB9aADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAeFw0yMDAx"
    "MDEwMDAwMDBaFw0yMTAxMDEwMDAwMDBaMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDBZMBMGByqGSM49"
    "AgEGCCqGSM49AwEHA0IABLgFTifWjNT/mQ4UV47YncIvfY9t0PRz6WqMUUYHGoUuBS6JtoXncksGsAkb"
    "mVCIls38RreskgLldejtt4fv4nyjMjAwMA8GA1UdEQQIMAaHBH8AAAEwHQYDVR0OBBYEFF4YaiXSBJo3"
    "RvK98XEEqQAEckp4MAoGCCqGSM49BAMCA0kAMEYCIQC2v5ARaTww6UP+fADbGtqxehUtGozRxAo+MIsq"
    "Bn6KvQIhAJDPePtivSRCJGhhUQF/Y1FvP0iYZHJxDm2iufW1r32g";
// For 127.0.0.1, in 2119.
const QByteArray fuerDereinst =
    "MIIBUjCB+aADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAiGA8yMTE5"
    "MDEwMTAwMDAwMFoYDzIxMjAwMTAxMDAwMDAwWjAXMRUwEwYDVQQDDAxrYWx2YXJvLXRlc3QwWTATBgcq"
    "hkjOPQIBBggqhkjOPQMBBwNCAAS4BU4n1ozU/5kOFFeO2J3CL32PbdD0c+lqjFFGBxqFLgUuibaF53JL"
    "BrAJG5lQiJbN/Ea3rJIC5XXo7beH7+J8ozIwMDAPBgNVHREECDAGhwR/AAABMB0GA1UdDgQWBBReGGol"
    "0gSaN0byvfFxBKkABHJKeDAKBggqhkjOPQQDAgNIADBFAiEA+EIuf3E6mL7N+n1c8Y7RAG3YihLUDl6N"
    "OpQ2QURc3FUCIGtFx0bXCM7XAhxajPELnIzoeZ8XyGohdXPd6Kj3CcOR";

std::unique_ptr<QTcpServer> tlsServer(const QByteArray &zertifikat)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(QSslCertificate(QByteArray::fromBase64(zertifikat), QSsl::Der));
    tls.setPrivateKey(QSslKey(QByteArray::fromBase64(schluessel), QSsl::Ec, QSsl::Der));
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(tls);
    return server;
}

Zertifikat ansehen(const QUrl &adresse, Testuhr &uhr, bool warten = true)
{
    QObject besitzer;
    std::optional<Zertifikat> gesehen;
    zertifikatsblick(uhr)(adresse, &besitzer, [&gesehen](const Zertifikat &z) { gesehen = z; });
    if (!warten) {
        uhr.vor(Sekunden(3.9));
        if (gesehen) {
            qFatal("It gives up too early");
        }
        uhr.vor(Sekunden(0.1));
    }
    if (!QTest::qWaitFor([&gesehen] { return gesehen.has_value(); }, 20'000)) {
        qFatal("Nothing was seen");
    }
    return *gesehen;
}

} // namespace

class TestZertifikat final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mangel_data()
    {
        QTest::addColumn<QByteArray>("zertifikat");
        QTest::addColumn<int>("bis"); // it ends when this year begins
        QTest::addColumn<Mangel>("erwartet");
        QTest::newRow("signs itself") << fuerHier << 2120 << Mangel::Unbeglaubigt;
        QTest::newRow("another name") << fuerAnders << 2120 << Mangel::AndererName;
        QTest::newRow("over") << fuerDamals << 2021 << Mangel::Abgelaufen;
        QTest::newRow("not yet") << fuerDereinst << 2120 << Mangel::NochNichtGueltig;
    }
    void mangel()
    {
        QFETCH(const QByteArray, zertifikat);
        QFETCH(const int, bis);
        Testuhr uhr;
        Rohserver server(QHostAddress::LocalHost, tlsServer(zertifikat));
        const Zertifikat z = ansehen(QUrl(server.adresse(u"https"_s)), uhr);
        QTEST(z.mangel, "erwartet");
        QCOMPARE(z.bis, QDateTime(QDate(bis, 1, 1), QTime(0, 0), QTimeZone::utc()));
        QVERIFY(z.von < z.bis);
        // Not a byte is for a server that has not proved who it is.
        QCOMPARE(server.empfangen().value(0), QByteArray());
    }

    void keinTls()
    {
        Testuhr uhr;
        Rohserver server;
        server.sonst({.bytes = "HTTP/1.1 400 Bad Request\r\n\r\n", .ungefragt = true});
        QCOMPARE(ansehen(QUrl(server.adresse(u"https"_s)), uhr), Zertifikat());
    }

    void niemandHoert()
    {
        Testuhr uhr;
        Rohserver server;
        const QUrl adresse(server.adresse(u"https"_s));
        server.verweigern();
        QCOMPARE(ansehen(adresse, uhr), Zertifikat());
    }

    void nachVierSekundenIstSchluss()
    {
        Testuhr uhr;
        Rohserver server;
        server.sonst({.bytes = {}, .ende = Rohserver::Ende::Offenlassen});
        QCOMPARE(ansehen(QUrl(server.adresse(u"https"_s)), uhr, false), Zertifikat());
    }
};

KALVARO_TEST(TestZertifikat)
#include "tst_zertifikat.moc"
