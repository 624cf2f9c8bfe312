// libcurl and OpenSSL on systems with ELF: the program is not linked with them but has their
// functions itself, under their own names, as a springboard to those of the libraries. So whoever
// calls them sees nothing of it but their headers.

#include "server/netzbindung.h"

#include <curl/curl.h>
#include <openssl/ocsp.h>
#include <openssl/ssl.h>

#include <array>
#include <cstdarg>
#include <dlfcn.h>

namespace {

enum class Bibliothek {
    Curl,
    Ssl,
    Crypto,
};

// Each function that is called: library, return type, name, parameters, and how it is called.
#define FESTE_FUNKTIONEN(X)                                                                        \
    X(Curl, CURLcode, curl_global_init, (long a), (a))                                             \
    X(Curl, CURL *, curl_easy_init, (), ())                                                        \
    X(Curl, void, curl_easy_cleanup, (CURL * a), (a))                                              \
    X(Curl, CURLM *, curl_multi_init, (), ())                                                      \
    X(Curl, CURLMcode, curl_multi_cleanup, (CURLM * a), (a))                                       \
    X(Curl, CURLMcode, curl_multi_add_handle, (CURLM * a, CURL * b), (a, b))                       \
    X(Curl, CURLMcode, curl_multi_remove_handle, (CURLM * a, CURL * b), (a, b))                    \
    X(Curl, CURLMcode, curl_multi_assign, (CURLM * a, curl_socket_t b, void *c), (a, b, c))        \
    X(Curl, CURLMcode, curl_multi_socket_action, (CURLM * a, curl_socket_t b, int c, int *d),      \
      (a, b, c, d))                                                                                \
    X(Curl, CURLMsg *, curl_multi_info_read, (CURLM * a, int *b), (a, b))                          \
    X(Curl, curl_slist *, curl_slist_append, (curl_slist * a, const char *b), (a, b))              \
    X(Curl, void, curl_slist_free_all, (curl_slist * a), (a))                                      \
    X(Ssl, SSL_CTX *, SSL_get_SSL_CTX, (const SSL *a), (a))                                        \
    X(Ssl, STACK_OF(X509) *, SSL_get0_verified_chain, (const SSL *a), (a))                         \
    X(Ssl, int, SSL_get_ex_data_X509_STORE_CTX_idx, (), ())                                        \
    X(Ssl, long, SSL_ctrl, (SSL * a, int b, long c, void *d), (a, b, c, d))                        \
    X(Ssl, long, SSL_CTX_ctrl, (SSL_CTX * a, int b, long c, void *d), (a, b, c, d))                \
    X(Ssl, long, SSL_CTX_callback_ctrl, (SSL_CTX * a, int b, void (*c)()), (a, b, c))              \
    X(Ssl, X509_STORE *, SSL_CTX_get_cert_store, (const SSL_CTX *a), (a))                          \
    X(Ssl, void *, SSL_CTX_get_ex_data, (const SSL_CTX *a, int b), (a, b))                         \
    X(Ssl, int, SSL_CTX_set_ex_data, (SSL_CTX * a, int b, void *c), (a, b, c))                     \
    X(Ssl, int, SSL_CTX_set_default_verify_paths, (SSL_CTX * a), (a))                              \
    X(Ssl, void, SSL_CTX_set_info_callback, (SSL_CTX * a, void (*b)(const SSL *, int, int)),       \
      (a, b))                                                                                      \
    X(Ssl, void, SSL_CTX_set_verify, (SSL_CTX * a, int b, SSL_verify_cb c), (a, b, c))             \
    X(Crypto, int, ASN1_TIME_to_tm, (const ASN1_TIME *a, tm *b), (a, b))                           \
    X(Crypto, int, CRYPTO_get_ex_new_index,                                                        \
      (int a, long b, void *c, CRYPTO_EX_new *d, CRYPTO_EX_dup *e, CRYPTO_EX_free *f),             \
      (a, b, c, d, e, f))                                                                          \
    X(Crypto, int, OPENSSL_sk_num, (const OPENSSL_STACK *a), (a))                                  \
    X(Crypto, void *, OPENSSL_sk_value, (const OPENSSL_STACK *a, int b), (a, b))                   \
    X(Crypto, X509 *, X509_STORE_CTX_get_current_cert, (const X509_STORE_CTX *a), (a))             \
    X(Crypto, int, X509_STORE_CTX_get_error, (const X509_STORE_CTX *a), (a))                       \
    X(Crypto, int, X509_STORE_CTX_get_error_depth, (const X509_STORE_CTX *a), (a))                 \
    X(Crypto, void *, X509_STORE_CTX_get_ex_data, (const X509_STORE_CTX *a, int b), (a, b))        \
    X(Crypto, const ASN1_TIME *, X509_get0_notAfter, (const X509 *a), (a))                         \
    X(Crypto, const ASN1_TIME *, X509_get0_notBefore, (const X509 *a), (a))                        \
    X(Crypto, OCSP_RESPONSE *, d2i_OCSP_RESPONSE,                                                  \
      (OCSP_RESPONSE * *a, const unsigned char **b, long c), (a, b, c))                            \
    X(Crypto, void, OCSP_RESPONSE_free, (OCSP_RESPONSE * a), (a))                                  \
    X(Crypto, OCSP_BASICRESP *, OCSP_response_get1_basic, (OCSP_RESPONSE * a), (a))                \
    X(Crypto, void, OCSP_BASICRESP_free, (OCSP_BASICRESP * a), (a))                                \
    X(Crypto, void, OCSP_CERTID_free, (OCSP_CERTID * a), (a))                                      \
    X(Crypto, OCSP_CERTID *, OCSP_cert_to_id, (const EVP_MD *a, const X509 *b, const X509 *c),     \
      (a, b, c))                                                                                   \
    X(Crypto, int, OCSP_basic_verify,                                                              \
      (OCSP_BASICRESP * a, STACK_OF(X509) * b, X509_STORE * c, unsigned long d), (a, b, c, d))     \
    X(Crypto, int, OCSP_resp_find_status,                                                          \
      (OCSP_BASICRESP * a, OCSP_CERTID * b, int *c, int *d, ASN1_GENERALIZEDTIME **e,              \
       ASN1_GENERALIZEDTIME **f, ASN1_GENERALIZEDTIME **g),                                        \
      (a, b, c, d, e, f, g))

// Those that take what their second argument says.
#define FREIE_FUNKTIONEN(X)                                                                        \
    X(Curl, CURLcode, curl_easy_setopt, , )                                                        \
    X(Curl, CURLcode, curl_easy_getinfo, , )                                                       \
    X(Curl, CURLMcode, curl_multi_setopt, , )

#define NUMMER(bibliothek, typ, name, parameter, argumente) nr_##name,
enum Nummer { FESTE_FUNKTIONEN(NUMMER) FREIE_FUNKTIONEN(NUMMER) anzahl };

struct Stelle
{
    Bibliothek bibliothek;
    const char *name;
};

#define STELLE(bibliothek, typ, name, parameter, argumente) Stelle{Bibliothek::bibliothek, #name},
constexpr std::array<Stelle, anzahl> stellen{FESTE_FUNKTIONEN(STELLE) FREIE_FUNKTIONEN(STELLE)};

std::array<void *, anzahl> ziele{}; // all of them or none

// The function as its header declares it; absent before the libraries are there.
template<typename Funktion>
Funktion *ziel(Nummer nummer)
{
    return reinterpret_cast<Funktion *>(ziele[nummer]);
}

// The values that libcurl's options take, by their number (curl.h, "CURLOPTTYPE_").
template<typename Setzer, typename Griff, typename Option>
auto gesetzt(Setzer setzer, Griff griff, Option was, std::va_list werte)
{
    constexpr int zahlen = CURLOPTTYPE_OBJECTPOINT; // above them
    constexpr int weiteZahlen = CURLOPTTYPE_OFF_T;
    constexpr int bloecke = CURLOPTTYPE_BLOB;
    if (was < zahlen) {
        return setzer(griff, was, va_arg(werte, long));
    }
    if (was >= weiteZahlen && was < bloecke) {
        return setzer(griff, was, va_arg(werte, curl_off_t));
    }
    return setzer(griff, was, va_arg(werte, void *));
}

// Whether nobody has put functions of his own before those of the C library: for another way into
// the network, another clock, other files, or to look after the memory. All of these are one
// object's.
bool unterlageUnberuehrt()
{
    const void *unterlage = nullptr;
    for (const char *const name :
         {"abort",  "accept", "bind",        "clock_gettime", "close",         "connect",
          "fopen",  "free",   "getaddrinfo", "getenv",        "gethostbyname", "malloc",
          "open",   "open64", "poll",        "read",          "recv",          "recvfrom",
          "select", "send",   "sendmsg",     "sendto",        "socket",        "write"}) {
        Dl_info woher = {};
        void *const dort = ::dlsym(RTLD_DEFAULT, name);
        if (dort == nullptr || ::dladdr(dort, &woher) == 0) {
            return false;
        }
        unterlage = unterlage == nullptr ? woher.dli_fbase : unterlage;
        if (woher.dli_fbase != unterlage) {
            return false;
        }
    }
    return true;
}

// The libraries find each other's functions in half the time where they need not look through all
// of the program's first.
int suchart()
{
    return RTLD_LAZY | RTLD_LOCAL | (unterlageUnberuehrt() ? KALVARO_EIGENES_ZUERST : 0);
}

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-macro-parentheses): a list of parameters has its own
#define SPRUNG(bibliothek, typ, name, parameter, argumente)                                        \
    typ(name) parameter                                                                            \
    {                                                                                              \
        auto *const dort = ziel<decltype(name)>(nr_##name);                                        \
        return dort != nullptr ? dort argumente : decltype(dort argumente)();                      \
    }
FESTE_FUNKTIONEN(SPRUNG)
// NOLINTEND(bugprone-macro-parentheses)

// The enumerations before the dots have the size of an int, in which they are passed.
#pragma GCC diagnostic ignored "-Wvarargs"

CURLcode(curl_easy_setopt)(CURL *griff, CURLoption was, ...)
{
    auto *const dort = ziel<decltype(curl_easy_setopt)>(nr_curl_easy_setopt);
    std::va_list werte;
    va_start(werte, was);
    const CURLcode stand = dort != nullptr ? gesetzt(dort, griff, was, werte) : CURLE_FAILED_INIT;
    va_end(werte);
    return stand;
}

CURLMcode(curl_multi_setopt)(CURLM *schleife, CURLMoption was, ...)
{
    auto *const dort = ziel<decltype(curl_multi_setopt)>(nr_curl_multi_setopt);
    std::va_list werte;
    va_start(werte, was);
    const CURLMcode stand =
        dort != nullptr ? gesetzt(dort, schleife, was, werte) : CURLM_INTERNAL_ERROR;
    va_end(werte);
    return stand;
}

CURLcode(curl_easy_getinfo)(CURL *griff, CURLINFO was, ...)
{
    auto *const dort = ziel<decltype(curl_easy_getinfo)>(nr_curl_easy_getinfo);
    std::va_list werte;
    va_start(werte, was);
    void *const wohin = va_arg(werte, void *);
    va_end(werte);
    return dort != nullptr ? dort(griff, was, wohin) : CURLE_FAILED_INIT;
}

} // extern "C"

namespace kalvaro {

bool netzbibliothekenLaden()
{
    static bool geladen = false;
    if (geladen) {
        return true;
    }
    // Never unloaded: others may have them as well, and they keep threads' data.
    const int art = suchart();
    const std::array bibliotheken{::dlopen(KALVARO_LIBCURL, art), ::dlopen(KALVARO_LIBSSL, art),
                                  ::dlopen(KALVARO_LIBCRYPTO, art)};
    std::array<void *, anzahl> gefunden{};
    for (size_t i = 0; i < stellen.size(); ++i) {
        void *const woher = bibliotheken[static_cast<size_t>(stellen[i].bibliothek)];
        gefunden[i] = woher != nullptr ? ::dlsym(woher, stellen[i].name) : nullptr;
        if (gefunden[i] == nullptr) {
            return false;
        }
    }
    ziele = gefunden;
    geladen = true;
    return true;
}

} // namespace kalvaro
