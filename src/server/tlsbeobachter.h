#pragma once

#include "server/transport.h"

#include <QDateTime>

#include <curl/curl.h>
#include <openssl/ssl.h>

#include <optional>

namespace kalvaro {

// Looks on while OpenSSL talks to a server, and tells why its certificate was not accepted, and
// whether the server itself ended the connection.
//
// A revocation is noticed when the server brings the proof along (OCSP stapling, RFC 6066, 8);
// nobody is asked for it.
class Tlsbeobachter
{
public:
    Tlsbeobachter() = default;
    Tlsbeobachter(const Tlsbeobachter &) = delete;
    Tlsbeobachter &operator=(const Tlsbeobachter &) = delete;

    // Must be called before `griff` connects and outlive that.
    void einrichten(CURL *griff);

    // Why the handshake was ended; absent when it was not, or not over a certificate.
    [[nodiscard]] const std::optional<Netzfehler> &mangel() const { return mangel_; }

    // Whether the server said that it ends here ("close_notify", RFC 8446, 6.1). Anybody can cut a
    // connection.
    [[nodiscard]] bool verabschiedet() const { return verabschiedet_; }

    // When the server's own certificate expires; invalid when none was shown.
    [[nodiscard]] const QDateTime &gueltigBis() const { return bis_; }

private:
    static CURLcode vorbereiten(CURL *griff, void *tls, void *selbst);
    static int geprueft(int gut, X509_STORE_CTX *kette);
    static int nachweis(SSL *tls, void *selbst);
    static void ereignis(const SSL *tls, int was, int wert);

    std::optional<Netzfehler> mangel_;
    QDateTime bis_;
    bool verabschiedet_ = false;
};

} // namespace kalvaro
