#pragma once

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

#include <memory>

namespace kalvaro {

// Certificates that sign themselves, DER, with one key. They serve these tests alone.
inline const QByteArray tlsSchluessel =
    "MHcCAQEEIFAJZxlEpq6tZrV/BHbX/ludslxB/0AiS/+BaQDQfCq0oAoGCCqGSM49AwEHoUQDQgAEuAVO"
    "J9aM1P+ZDhRXjtidwi99j23Q9HPpaoxRRgcahS4FLom2hedySwawCRuZUIiWzfxGt6ySAuV16O23h+/i"
    "fA==";
// For 127.0.0.1, from 2020 to 2120.
inline const QByteArray fuerHier =
    "MIIBUDCB96ADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAgFw0yMDAx"
    "MDEwMDAwMDBaGA8yMTIwMDEwMTAwMDAwMFowFzEVMBMGA1UEAwwMa2FsdmFyby10ZXN0MFkwEwYHKoZI"
    "zj0CAQYIKoZIzj0DAQcDQgAEuAVOJ9aM1P+ZDhRXjtidwi99j23Q9HPpaoxRRgcahS4FLom2hedySwaw"
    "CRuZUIiWzfxGt6ySAuV16O23h+/ifKMyMDAwDwYDVR0RBAgwBocEfwAAATAdBgNVHQ4EFgQUXhhqJdIE"
    "mjdG8r3xcQSpAARySngwCgYIKoZIzj0EAwIDSAAwRQIhALZ/rjCTqq06wn3DCGU9aRD8+4/g+wsg+WBx"
    "qO1mIuhnAiAhoDmBQzfEF8PYrCtEE0EWHvGdY2LmGPxACaWfv9eOIA==";
// For a host called "anders", from 2020 to 2120.
inline const QByteArray fuerAnders =
    "MIIBUTCB+aADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAgFw0yMDAx"
    "MDEwMDAwMDBaGA8yMTIwMDEwMTAwMDAwMFowFzEVMBMGA1UEAwwMa2FsdmFyby10ZXN0MFkwEwYHKoZI"
    "zj0CAQYIKoZIzj0DAQcDQgAEuAVOJ9aM1P+ZDhRXjtidwi99j23Q9HPpaoxRRgcahS4FLom2hedySwaw"
    "CRuZUIiWzfxGt6ySAuV16O23h+/ifKM0MDIwEQYDVR0RBAowCIIGYW5kZXJzMB0GA1UdDgQWBBReGGol"
    "0gSaN0byvfFxBKkABHJKeDAKBggqhkjOPQQDAgNHADBEAiBA3pkYVx1lMQaEqum2OciKdCW42h/kR7Fu"
    "I1ydFnMVPQIgWPzSqkPRVIjw3hIYhrkAGJdUNgJKciIrieBliUAD3P8=";
// For 127.0.0.1, in 2020.
inline const QByteArray fuerDamals =
    "MIIBTzCB9aADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAeFw0yMDAx"
    "MDEwMDAwMDBaFw0yMTAxMDEwMDAwMDBaMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDBZMBMGByqGSM49"
    "AgEGCCqGSM49AwEHA0IABLgFTifWjNT/mQ4UV47YncIvfY9t0PRz6WqMUUYHGoUuBS6JtoXncksGsAkb"
    "mVCIls38RreskgLldejtt4fv4nyjMjAwMA8GA1UdEQQIMAaHBH8AAAEwHQYDVR0OBBYEFF4YaiXSBJo3"
    "RvK98XEEqQAEckp4MAoGCCqGSM49BAMCA0kAMEYCIQC2v5ARaTww6UP+fADbGtqxehUtGozRxAo+MIsq"
    "Bn6KvQIhAJDPePtivSRCJGhhUQF/Y1FvP0iYZHJxDm2iufW1r32g";
// For 127.0.0.1, in 2119.
inline const QByteArray fuerDereinst =
    "MIIBUjCB+aADAgECAgEBMAoGCCqGSM49BAMCMBcxFTATBgNVBAMMDGthbHZhcm8tdGVzdDAiGA8yMTE5"
    "MDEwMTAwMDAwMFoYDzIxMjAwMTAxMDAwMDAwWjAXMRUwEwYDVQQDDAxrYWx2YXJvLXRlc3QwWTATBgcq"
    "hkjOPQIBBggqhkjOPQMBBwNCAAS4BU4n1ozU/5kOFFeO2J3CL32PbdD0c+lqjFFGBxqFLgUuibaF53JL"
    "BrAJG5lQiJbN/Ea3rJIC5XXo7beH7+J8ozIwMDAPBgNVHREECDAGhwR/AAABMB0GA1UdDgQWBBReGGol"
    "0gSaN0byvfFxBKkABHJKeDAKBggqhkjOPQQDAgNIADBFAiEA+EIuf3E6mL7N+n1c8Y7RAG3YihLUDl6N"
    "OpQ2QURc3FUCIGtFx0bXCM7XAhxajPELnIzoeZ8XyGohdXPd6Kj3CcOR";
// Its subject says 127.0.0.1, but its alternative name "anders"; 2020 to 2120.
inline const QByteArray nurImBetreff =
    "MIIBcDCCARegAwIBAgIULyd9MfV936+IoBFRipD4JlxiJv4wCgYIKoZIzj0EAwIwFDESMBAGA1UEAwwJ"
    "MTI3LjAuMC4xMCAXDTIwMDEwMTAwMDAwMFoYDzIxMjAwMTAxMDAwMDAwWjAUMRIwEAYDVQQDDAkxMjcu"
    "MC4wLjEwWTATBgcqhkjOPQIBBggqhkjOPQMBBwNCAAS4BU4n1ozU/5kOFFeO2J3CL32PbdD0c+lqjFFG"
    "BxqFLgUuibaF53JLBrAJG5lQiJbN/Ea3rJIC5XXo7beH7+J8o0UwQzARBgNVHREECjAIggZhbmRlcnMw"
    "DwYDVR0TAQH/BAUwAwEB/zAdBgNVHQ4EFgQUXhhqJdIEmjdG8r3xcQSpAARySngwCgYIKoZIzj0EAwID"
    "RwAwRAIgaPdKlQgflgHcEGWkWWNZ9VS0GJ7zpp65EoKQvVX3IhACIAJcABon571s04+uUBVocVYgLSXG"
    "ziW6jGrmW2UzN59w";

inline QSslCertificate zertifikat(const QByteArray &der = fuerHier)
{
    return QSslCertificate(QByteArray::fromBase64(der), QSsl::Der);
}

// A server that shows one of them.
inline std::unique_ptr<QTcpServer> tlsServer(const QByteArray &der = fuerHier)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(zertifikat(der));
    // It would rather speak HTTP/2.
    tls.setAllowedNextProtocols(
        {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
    tls.setPrivateKey(QSslKey(QByteArray::fromBase64(tlsSchluessel), QSsl::Ec, QSsl::Der));
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(tls);
    return server;
}

// Trusts one of them for as long as it lives.
class Vertrauen
{
public:
    explicit Vertrauen(const QByteArray &der = fuerHier)
    {
        QFile datei(ordner.filePath(QStringLiteral("vertraut.pem")));
        if (!datei.open(QIODevice::WriteOnly) || datei.write(zertifikat(der).toPem()) <= 0) {
            qFatal("The trusted certificate cannot be written");
        }
        datei.close();
        qputenv("SSL_CERT_FILE", datei.fileName().toLocal8Bit());
    }
    ~Vertrauen() { qunsetenv("SSL_CERT_FILE"); }
    Vertrauen(const Vertrauen &) = delete;
    Vertrauen &operator=(const Vertrauen &) = delete;

private:
    const QTemporaryDir ordner;
};

} // namespace kalvaro
