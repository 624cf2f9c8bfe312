#include "server/tlsbeobachter.h"

#include <openssl/ocsp.h>
#include <openssl/x509.h>

#include <ctime>
#include <memory>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Where OpenSSL keeps for us who looks on.
int platz()
{
    static const int nummer = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
    return nummer;
}

Tlsbeobachter *beobachter(const SSL *tls)
{
    return static_cast<Tlsbeobachter *>(SSL_CTX_get_ex_data(SSL_get_SSL_CTX(tls), platz()));
}

QDateTime zeit(const ASN1_TIME *wann)
{
    std::tm teile = {};
    return ASN1_TIME_to_tm(wann, &teile) == 1 ? QDateTime::fromSecsSinceEpoch(::timegm(&teile))
                                              : QDateTime();
}

QString tag(const ASN1_TIME *wann)
{
    return zeit(wann).toString(u"dd.MM.yyyy"_s);
}

Netzfehler ausFehler(int fehler, const X509 *zertifikat)
{
    switch (fehler) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
        return netzfehler(Netzfehlerart::Abgelaufen, tag(X509_get0_notAfter(zertifikat)));
    case X509_V_ERR_CERT_NOT_YET_VALID:
        return netzfehler(Netzfehlerart::NochNichtGueltig, tag(X509_get0_notBefore(zertifikat)));
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
    case X509_V_ERR_CERT_UNTRUSTED:
    case X509_V_ERR_CERT_REJECTED:
        return netzfehler(Netzfehlerart::Aussteller);
    case X509_V_ERR_CERT_REVOKED:
        return netzfehler(Netzfehlerart::Widerrufen);
    case X509_V_ERR_EE_KEY_TOO_SMALL:
    case X509_V_ERR_CA_KEY_TOO_SMALL:
    case X509_V_ERR_CA_MD_TOO_WEAK:
        return netzfehler(Netzfehlerart::Schwach);
    default:
        return netzfehler(Netzfehlerart::Unsicher);
    }
}

using Antwort = std::unique_ptr<OCSP_RESPONSE, decltype(&OCSP_RESPONSE_free)>;
using Auskunft = std::unique_ptr<OCSP_BASICRESP, decltype(&OCSP_BASICRESP_free)>;
using Kennung = std::unique_ptr<OCSP_CERTID, decltype(&OCSP_CERTID_free)>;

// Whether `auskunft`, which somebody trusted has signed, says that the server's certificate is
// revoked.
bool widerrufen(SSL *tls, OCSP_BASICRESP *auskunft)
{
    STACK_OF(X509) *const kette = SSL_get0_verified_chain(tls);
    X509_STORE *const vertraute = SSL_CTX_get_cert_store(SSL_get_SSL_CTX(tls));
    if (sk_X509_num(kette) < 2 || OCSP_basic_verify(auskunft, kette, vertraute, 0) != 1) {
        return false;
    }
    const Kennung kennung(
        OCSP_cert_to_id(nullptr, sk_X509_value(kette, 0), sk_X509_value(kette, 1)),
        &OCSP_CERTID_free);
    int stand = V_OCSP_CERTSTATUS_UNKNOWN;
    return kennung &&
           OCSP_resp_find_status(auskunft, kennung.get(), &stand, nullptr, nullptr, nullptr,
                                 nullptr) == 1 &&
           stand == V_OCSP_CERTSTATUS_REVOKED;
}

} // namespace

void Tlsbeobachter::einrichten(CURL *griff)
{
    curl_easy_setopt(griff, CURLOPT_SSL_CTX_FUNCTION, &Tlsbeobachter::vorbereiten);
    curl_easy_setopt(griff, CURLOPT_SSL_CTX_DATA, this);
    // libcurl would read all of the system's certificates each time, and fail without their file.
    curl_easy_setopt(griff, CURLOPT_CAINFO, nullptr);
    curl_easy_setopt(griff, CURLOPT_CAPATH, nullptr);
}

CURLcode Tlsbeobachter::vorbereiten(CURL * /*griff*/, void *tls, void *selbst)
{
    auto *const kontext = static_cast<SSL_CTX *>(tls);
    SSL_CTX_set_default_verify_paths(kontext);
    SSL_CTX_set_ex_data(kontext, platz(), selbst);
    SSL_CTX_set_info_callback(kontext, &Tlsbeobachter::ereignis);
    SSL_CTX_set_verify(kontext, SSL_VERIFY_PEER, &Tlsbeobachter::geprueft);
    SSL_CTX_set_tlsext_status_type(kontext, TLSEXT_STATUSTYPE_ocsp);
    SSL_CTX_set_tlsext_status_cb(kontext, &Tlsbeobachter::nachweis);
    SSL_CTX_set_tlsext_status_arg(kontext, selbst);
    return CURLE_OK;
}

// For each certificate of the chain, from the root to the server's own, and for each fault.
int Tlsbeobachter::geprueft(int gut, X509_STORE_CTX *kette)
{
    const auto *const tls =
        static_cast<SSL *>(X509_STORE_CTX_get_ex_data(kette, SSL_get_ex_data_X509_STORE_CTX_idx()));
    Tlsbeobachter *const selbst = beobachter(tls);
    const X509 *const zertifikat = X509_STORE_CTX_get_current_cert(kette);
    if (gut == 0) {
        selbst->mangel_ = ausFehler(X509_STORE_CTX_get_error(kette), zertifikat);
    } else if (zertifikat && X509_STORE_CTX_get_error_depth(kette) == 0) {
        selbst->bis_ = zeit(X509_get0_notAfter(zertifikat));
    }
    return gut;
}

void Tlsbeobachter::ereignis(const SSL *tls, int was, int wert)
{
    constexpr int art = 0xff; // the higher byte is the level
    if (was == SSL_CB_READ_ALERT && (wert & art) == SSL_AD_CLOSE_NOTIFY) {
        beobachter(tls)->verabschiedet_ = true;
    }
}

// 1: goes on; 0: ends the handshake. What cannot be read or is signed by a stranger proves nothing.
int Tlsbeobachter::nachweis(SSL *tls, void *selbst)
{
    const unsigned char *bytes = nullptr;
    const long laenge = SSL_get_tlsext_status_ocsp_resp(tls, &bytes);
    if (laenge <= 0) {
        return 1;
    }
    const Antwort antwort(d2i_OCSP_RESPONSE(nullptr, &bytes, laenge), &OCSP_RESPONSE_free);
    const Auskunft auskunft(antwort ? OCSP_response_get1_basic(antwort.get()) : nullptr,
                            &OCSP_BASICRESP_free);
    if (auskunft && widerrufen(tls, auskunft.get())) {
        static_cast<Tlsbeobachter *>(selbst)->mangel_ = netzfehler(Netzfehlerart::Widerrufen);
        return 0;
    }
    return 1;
}

} // namespace kalvaro
