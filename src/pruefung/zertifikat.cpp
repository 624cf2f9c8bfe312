#include "pruefung/zertifikat.h"

#include "foundation/einmalruf.h"
#include "foundation/uhr.h"

#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslError>
#include <QSslSocket>
#include <QUrl>

namespace kalvaro {

namespace {

constexpr Sekunden laengstens{4};
constexpr quint16 tlsHafen = 443;

Zertifikat::Mangel mangel(QSslError::SslError fehler)
{
    switch (fehler) {
    case QSslError::CertificateExpired:
        return Zertifikat::Mangel::Abgelaufen;
    case QSslError::CertificateNotYetValid:
        return Zertifikat::Mangel::NochNichtGueltig;
    case QSslError::HostNameMismatch:
        return Zertifikat::Mangel::AndererName;
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToVerifyFirstCertificate:
    case QSslError::SelfSignedCertificate:
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::CertificateUntrusted:
        return Zertifikat::Mangel::Unbeglaubigt;
    default:
        return Zertifikat::Mangel::Unbekannt;
    }
}

class Blick final : public Einmalruf<Zertifikat>
{
public:
    using Einmalruf::Einmalruf;

    void beginnen(const QUrl &adresse, Uhr &uhr)
    {
        frist_ = uhr.nach(laengstens, [this] { antworten({}); });
        leitung_.setProxy(QNetworkProxy::NoProxy);
        leitung_.setPeerVerifyMode(QSslSocket::QueryPeer);
        connect(&leitung_, &QSslSocket::encrypted, this, &Blick::ansehen);
        connect(&leitung_, &QSslSocket::errorOccurred, this, [this] { antworten({}); });
        leitung_.connectToHostEncrypted(adresse.host(),
                                        static_cast<quint16>(adresse.port(tlsHafen)));
    }

private:
    void ansehen()
    {
        const QSslCertificate blatt = leitung_.peerCertificate();
        Zertifikat ergebnis{.von = blatt.effectiveDate(), .bis = blatt.expiryDate()};
        // What most likely is the cause comes first, and so it does in the enumeration.
        const QList<QSslError> alle = leitung_.sslHandshakeErrors();
        for (const QSslError &fehler : alle) {
            const Zertifikat::Mangel einer = mangel(fehler.error());
            if (ergebnis.mangel == Zertifikat::Mangel::Unbekannt ||
                (einer != Zertifikat::Mangel::Unbekannt && einer < ergebnis.mangel)) {
                ergebnis.mangel = einer;
            }
        }
        antworten(ergebnis);
        leitung_.abort();
    }

    QSslSocket leitung_;
    Weckruf frist_;
};

} // namespace

Zertifikatsblick zertifikatsblick(Uhr &uhr)
{
    return [&uhr](const QUrl &adresse, QObject *besitzer, std::function<void(Zertifikat)> fertig) {
        (new Blick(besitzer, std::move(fertig)))->beginnen(adresse, uhr);
    };
}

} // namespace kalvaro
