#pragma once

#include "server/transport.h"

#include <QDateTime>

#include <curl/curl.h>
#include <openssl/ssl.h>

#include <optional>

namespace kalvaro {

// Looks on while OpenSSL checks the certificates of a server, and tells why one was not accepted.
// A revocation is noticed when the server brings the proof along (OCSP stapling, RFC 6066, 8);
// nobody is asked for it.
class Zertifikatspruefung
{
public:
    Zertifikatspruefung() = default;
    Zertifikatspruefung(const Zertifikatspruefung &) = delete;
    Zertifikatspruefung &operator=(const Zertifikatspruefung &) = delete;

    // Must be called before `griff` connects and outlive that.
    void einrichten(CURL *griff);

    // Why the handshake was ended; absent when it was not, or not over a certificate.
    [[nodiscard]] const std::optional<Netzfehler> &mangel() const { return mangel_; }

    // When the server's own certificate expires; invalid when none was shown.
    [[nodiscard]] const QDateTime &gueltigBis() const { return bis_; }

private:
    static CURLcode vorbereiten(CURL *griff, void *tls, void *selbst);
    static int geprueft(int gut, X509_STORE_CTX *kette);
    static int nachweis(SSL *tls, void *selbst);

    std::optional<Netzfehler> mangel_;
    QDateTime bis_;
};

} // namespace kalvaro
