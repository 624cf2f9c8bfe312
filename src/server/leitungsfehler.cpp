#include "server/leitung.h"

#include "foundation/deskriptoren.h"
#include "server/tlsbeobachter.h"

#include <QByteArrayView>

#include <cerrno>

namespace kalvaro {

namespace {

constexpr long anmeldungVerlangt = 407;
constexpr long erfolg = 299; // the highest status of a proxy that lets through

} // namespace

long Leitung::zahl(CURLINFO was) const
{
    long wert = 0;
    if (griff_) {
        curl_easy_getinfo(griff_, was, &wert);
    }
    return wert;
}

Netzfehler Leitung::fehler(CURLcode stand) const
{
    if (grund_) {
        Netzfehler fehler = netzfehler(*grund_);
        fehler.beantwortet = antwort_.status == 101; // whatever was asked for may be under way
        return fehler;
    }
    if (const auto mangel = tls_->mangel()) {
        return *mangel;
    }
    if (const long status = zahl(CURLINFO_HTTP_CONNECTCODE); status > erfolg) {
        return status == anmeldungVerlangt
                   ? netzfehler(Netzfehlerart::ProxyAnmeldung)
                   : netzfehler(Netzfehlerart::ProxyVerweigert, QString::number(status));
    }
    if (zahl(CURLINFO_REQUEST_SIZE) == 0 && !deskriptorenFrei(1)) {
        return netzfehler(Netzfehlerart::KeineMittel); // it says that there is no such name
    }
    switch (stand) {
    case CURLE_COULDNT_RESOLVE_PROXY:
        return netzfehler(Netzfehlerart::ProxyUnbekannt);
    case CURLE_COULDNT_RESOLVE_HOST:
        return netzfehler(Netzfehlerart::ServerUnbekannt);
    case CURLE_COULDNT_CONNECT:
        return netzfehler(verbindungsfehler());
    case CURLE_PROXY:
        return netzfehler(Netzfehlerart::ProxyUnerreichbar);
    case CURLE_OPERATION_TIMEDOUT:
        return {.zeitUeberschritten = true};
    case CURLE_PEER_FAILED_VERIFICATION: // the chain is in order, so it is the name
        return netzfehler(Netzfehlerart::AndererName, ziel_.host());
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
        return netzfehler(Netzfehlerart::Unsicher);
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
        return netzfehler(Netzfehlerart::Unterbrochen);
    case CURLE_RECV_ERROR: {
        // Also for damaged chunks, which only the wording tells; a mistake there costs a text.
        const bool stuecke = QByteArrayView(wortlaut_.data()).contains("hunk");
        return netzfehler(stuecke ? Netzfehlerart::Unverstaendlich : Netzfehlerart::Unterbrochen);
    }
    case CURLE_URL_MALFORMAT:
        return netzfehler(Netzfehlerart::Adresse);
    case CURLE_UNSUPPORTED_PROTOCOL: // an answer without a status line; schemes were looked at
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_WRITE_ERROR:
    case CURLE_HTTP_RETURNED_ERROR:
        return netzfehler(Netzfehlerart::Unverstaendlich);
    default:
        break;
    }
    // Once the way is open it is what the server says, such as a line without end.
    if (zahl(CURLINFO_REQUEST_SIZE) > 0) {
        return netzfehler(Netzfehlerart::Unverstaendlich);
    }
    const bool mittel = stand == CURLE_OUT_OF_MEMORY || stand == CURLE_FAILED_INIT;
    return netzfehler(mittel ? Netzfehlerart::KeineMittel : Netzfehlerart::KeineVerbindung);
}

Netzfehlerart Leitung::verbindungsfehler() const
{
    switch (zahl(CURLINFO_OS_ERRNO)) {
    case EMFILE:
    case ENFILE:
    case ENOMEM:
    case ENOBUFS:
        return Netzfehlerart::KeineMittel;
    case ENETUNREACH:
    case EHOSTUNREACH:
    case ENETDOWN:
    case EHOSTDOWN:
    case EADDRNOTAVAIL:
        return mitProxy_ ? Netzfehlerart::ProxyUnerreichbar : Netzfehlerart::NetzUnerreichbar;
    case ECONNREFUSED:
        return mitProxy_ ? Netzfehlerart::ProxyUnerreichbar : Netzfehlerart::Abgelehnt;
    case ECONNRESET:
    case EPIPE:
        return mitProxy_ ? Netzfehlerart::ProxyUnerreichbar : Netzfehlerart::Unterbrochen;
    default:
        return mitProxy_ ? Netzfehlerart::ProxyUnerreichbar : Netzfehlerart::KeineVerbindung;
    }
}

} // namespace kalvaro
