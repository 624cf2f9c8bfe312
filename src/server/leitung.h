#pragma once

#include "server/transport.h"

#include <QNetworkProxy>
#include <QObject>
#include <QTimer>

#include <curl/curl.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>

namespace kalvaro {

class Tlsbeobachter;

// One request over HTTP/1.1 and what is answered to it, by libcurl in our event loop: no redirect,
// no second attempt, no limit in time. Interim answers are read over.
//
// Destroying it ends the exchange at once; a name that is still being looked up is left to itself.
class Leitung final : public QObject
{
public:
    struct Antwort
    {
        int status = 0;         // from 200 to 999
        QByteArray daten{};     // with their content coding
        QByteArray kodierung{}; // "Content-Encoding", several lines joined with commas
        QByteArray ort{};       // "Location", the first one
        QByteArray laenge{};    // "Content-Length"
        QDateTime zertifikatBis{};
    };
    using Ergebnis = tl::expected<Antwort, Netzfehler>;
    using Ruf = std::function<void(const Ergebnis &)>;

    // Direct unless `proxy` names one. Trusts what OpenSSL trusts on this system; SSL_CERT_FILE and
    // SSL_CERT_DIR change that, as with other programs that use it.
    // `fertig` is called once, from the event loop, unless this object goes before.
    Leitung(const Netzanfrage &anfrage, const QNetworkProxy &proxy, Ruf fertig);
    ~Leitung() override;

private:
    struct Aufraeumen
    {
        void operator()(curl_slist *liste) const { curl_slist_free_all(liste); }
    };

    // What libcurl calls, `eins` being 1. None of it ends anything: libcurl is still at work then.
    static size_t kopfzeile(const char *bytes, size_t eins, size_t anzahl, void *selbst);
    static size_t inhalt(const char *bytes, size_t eins, size_t anzahl, void *selbst);
    static int socketGeaendert(CURL *griff, curl_socket_t socket, int was, void *selbst,
                               void *horcher);
    static int weckerGeaendert(CURLM *schleife, long millisekunden, void *selbst);

    template<typename Wert>
    void setzen(CURLoption was, Wert wert)
    {
        curl_easy_setopt(griff_, was, wert);
    }
    void ablaufEinstellen();
    void zielEinstellen();
    void proxyEinstellen(const QNetworkProxy &proxy);
    void anfrageEinstellen(const Netzanfrage &anfrage);

    [[nodiscard]] bool kopfzeileGelesen(const QByteArray &zeile);
    [[nodiscard]] bool feldGelesen(const QByteArray &zeile);
    [[nodiscard]] bool statuszeileGelesen(const QByteArray &zeile);
    [[nodiscard]] bool abgebrochen() const;
    void weiter(curl_socket_t socket, int was);
    void beenden(CURLcode stand);
    [[nodiscard]] Netzfehler fehler(CURLcode stand) const;
    [[nodiscard]] Netzfehlerart verbindungsfehler() const;
    [[nodiscard]] long zahl(CURLINFO was) const;

    const Ruf fertig_;
    const QUrl ziel_;
    const bool mitProxy_;
    const QByteArray body_;
    const std::unique_ptr<Tlsbeobachter> tls_;
    std::unique_ptr<curl_slist, Aufraeumen> kopf_;
    CURL *const griff_;     // absent when there is no memory
    CURLM *const schleife_; // the same
    QTimer wecker_;         // libcurl's own clock, in real time
    std::array<char, CURL_ERROR_SIZE> wortlaut_{};

    Antwort antwort_;
    qsizetype kopfBytes_ = 0;              // of all header lines, interim answers included
    bool kopfVollstaendig_ = false;        // of the answer that is being read
    bool inStuecken_ = false;              // its body comes in chunks, which tell where it ends
    std::optional<Netzfehlerart> grund_{}; // why we ended it ourselves
    bool beendet_ = false;
};

} // namespace kalvaro
