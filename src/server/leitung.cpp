#include "server/leitung.h"

#include "server/tlsbeobachter.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cctype>
#include <cerrno>

namespace kalvaro {

namespace {

constexpr qsizetype groessteAntwort = qsizetype{64} * 1024 * 1024;
constexpr qsizetype groessterKopf = qsizetype{256} * 1024;
constexpr qsizetype laengsteZeile = qsizetype{8} * 1024;

// Longer than any limit of ours: without one libcurl gives up connecting after 300 s.
constexpr long verbindenDarf = 24L * 60 * 60; // seconds

void bibliothekVorbereiten()
{
    static const CURLcode stand = curl_global_init(CURL_GLOBAL_DEFAULT);
    Q_UNUSED(stand)
}

// What libcurl wants to know of one socket.
class Horcher final : public QObject
{
public:
    template<typename Ruf>
    Horcher(curl_socket_t socket, QObject *parent, Ruf bereit)
        : QObject(parent)
        , lesbar_(socket, QSocketNotifier::Read)
        , schreibbar_(socket, QSocketNotifier::Write)
    {
        connect(&lesbar_, &QSocketNotifier::activated, this,
                [bereit, socket] { bereit(socket, CURL_CSELECT_IN); });
        connect(&schreibbar_, &QSocketNotifier::activated, this,
                [bereit, socket] { bereit(socket, CURL_CSELECT_OUT); });
    }

    void stellen(int was)
    {
        lesbar_.setEnabled((was & CURL_POLL_IN) != 0);
        schreibbar_.setEnabled((was & CURL_POLL_OUT) != 0);
    }

    // It may be telling of its socket right now.
    void aufgeben()
    {
        stellen(CURL_POLL_NONE);
        deleteLater();
    }

private:
    QSocketNotifier lesbar_;
    QSocketNotifier schreibbar_;
};

bool nurZiffern(const QByteArray &text)
{
    return std::all_of(text.begin(), text.end(), [](char z) { return z >= '0' && z <= '9'; });
}

// The value of the header line `zeile` if its name is `name`.
std::optional<QByteArray> wertVon(const QByteArray &zeile, QByteArrayView name)
{
    const qsizetype ende = zeile.indexOf(':');
    if (ende < 0 || zeile.left(ende).compare(name, Qt::CaseInsensitive) != 0) {
        return {};
    }
    return zeile.sliced(ende + 1).trimmed();
}

// RFC 9110, 8.6: digits. What a number of 64 bits cannot hold is as good as none.
bool laengeGueltig(const QByteArray &laenge)
{
    constexpr qsizetype meisteZiffern = 18;
    return !laenge.isEmpty() && laenge.size() <= meisteZiffern && nurZiffern(laenge);
}

} // namespace

Leitung::Leitung(const Netzanfrage &anfrage, const QNetworkProxy &proxy, Ruf fertig)
    : fertig_(std::move(fertig))
    , ziel_(anfrage.url)
    , mitProxy_(proxy.type() != QNetworkProxy::NoProxy)
    , body_(anfrage.body.value_or(QByteArray()))
    , tls_(std::make_unique<Tlsbeobachter>())
    , griff_((bibliothekVorbereiten(), curl_easy_init()))
    , schleife_(curl_multi_init())
{
    if (!griff_ || !schleife_) {
        beenden(CURLE_OUT_OF_MEMORY);
        return;
    }
    ablaufEinstellen();
    zielEinstellen();
    proxyEinstellen(proxy);
    anfrageEinstellen(anfrage);
    if (curl_multi_add_handle(schleife_, griff_) != CURLM_OK) {
        beenden(CURLE_OUT_OF_MEMORY);
    }
}

Leitung::~Leitung()
{
    if (griff_ && schleife_) {
        curl_multi_remove_handle(schleife_, griff_);
    }
    curl_easy_cleanup(griff_);
    curl_multi_cleanup(schleife_);
}

void Leitung::ablaufEinstellen()
{
    setzen(CURLOPT_ERRORBUFFER, wortlaut_.data());
    setzen(CURLOPT_HEADERFUNCTION, &Leitung::kopfzeile);
    setzen(CURLOPT_HEADERDATA, this);
    setzen(CURLOPT_WRITEFUNCTION, &Leitung::inhalt);
    setzen(CURLOPT_WRITEDATA, this);
    setzen(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);

    setzen(CURLOPT_PROTOCOLS_STR, "http,https");
    setzen(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    setzen(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    setzen(CURLOPT_CONNECTTIMEOUT, verbindenDarf);
    // A connection serves one request, so nothing is ever sent a second time.
    setzen(CURLOPT_FRESH_CONNECT, 1L);
    setzen(CURLOPT_FORBID_REUSE, 1L);
    // Nobody waits for a name that is still being looked up.
    setzen(CURLOPT_QUICK_EXIT, 1L);
    tls_->einrichten(griff_);

    wecker_.setSingleShot(true);
    wecker_.setTimerType(Qt::PreciseTimer);
    connect(&wecker_, &QTimer::timeout, this, [this] { weiter(CURL_SOCKET_TIMEOUT, 0); });
    curl_multi_setopt(schleife_, CURLMOPT_SOCKETFUNCTION, &Leitung::socketGeaendert);
    curl_multi_setopt(schleife_, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(schleife_, CURLMOPT_TIMERFUNCTION, &Leitung::weckerGeaendert);
    curl_multi_setopt(schleife_, CURLMOPT_TIMERDATA, this);
}

void Leitung::zielEinstellen()
{
    const QByteArray ziel =
        ziel_.toEncoded(QUrl::FullyEncoded | QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    setzen(CURLOPT_URL, ziel.constData());
    setzen(CURLOPT_PATH_AS_IS, 1L); // dots stay
    if (!ziel_.userInfo().isEmpty()) {
        setzen(CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
        setzen(CURLOPT_USERNAME, ziel_.userName(QUrl::FullyDecoded).toUtf8().constData());
        setzen(CURLOPT_PASSWORD, ziel_.password(QUrl::FullyDecoded).toUtf8().constData());
    }
}

// The environment's variables are part of the system's answer, so libcurl does not look again.
void Leitung::proxyEinstellen(const QNetworkProxy &proxy)
{
    setzen(CURLOPT_NOPROXY, "");
    if (!mitProxy_) {
        setzen(CURLOPT_PROXY, "");
        return;
    }
    const bool socks = proxy.type() == QNetworkProxy::Socks5Proxy;
    setzen(CURLOPT_PROXYTYPE, long{socks ? CURLPROXY_SOCKS5_HOSTNAME : CURLPROXY_HTTP});
    const QString host = proxy.hostName();
    const QString name = host.contains(u':') ? u'[' + host + u']' : host;
    setzen(CURLOPT_PROXY, name.toUtf8().constData());
    setzen(CURLOPT_PROXYPORT, long{proxy.port()});
    if (!proxy.user().isEmpty()) {
        setzen(CURLOPT_PROXYUSERNAME, proxy.user().toUtf8().constData());
        setzen(CURLOPT_PROXYPASSWORD, proxy.password().toUtf8().constData());
    }
}

void Leitung::anfrageEinstellen(const Netzanfrage &anfrage)
{
    if (anfrage.body) {
        setzen(CURLOPT_POSTFIELDS, body_.constData());
        setzen(CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t{body_.size()});
    } else {
        setzen(CURLOPT_HTTPGET, 1L);
    }
    setzen(CURLOPT_CUSTOMREQUEST, anfrage.methode.constData());

    const auto anhaengen = [this](const QByteArray &zeile) {
        kopf_.reset(curl_slist_append(kopf_.release(), zeile.constData()));
    };
    anhaengen("Connection: close");
    anhaengen("Accept-Encoding: gzip, deflate");
    anhaengen("Accept-Language: de");
    anhaengen("Expect:"); // leaves it out: nobody is asked whether a body may follow
    for (const auto &[name, wert] : anfrage.kopf) {
        // A line without a value is written with a semicolon.
        anhaengen(name + (wert.trimmed().isEmpty() ? QByteArray(";") : ": " + wert));
    }
    setzen(CURLOPT_HTTPHEADER, kopf_.get());
}

size_t Leitung::kopfzeile(const char *bytes, size_t /*eins*/, size_t anzahl, void *selbst)
{
    const auto laenge = static_cast<qsizetype>(anzahl);
    const bool gut = static_cast<Leitung *>(selbst)->kopfzeileGelesen(QByteArray(bytes, laenge));
    return gut ? anzahl : 0;
}

bool Leitung::kopfzeileGelesen(const QByteArray &zeile)
{
    kopfBytes_ += zeile.size();
    bool gut = zeile.size() <= laengsteZeile && kopfBytes_ <= groessterKopf;
    if (zeile.startsWith("HTTP/")) {
        gut = gut && statuszeileGelesen(zeile);
    } else if (antwort_.status == 0) { // libcurl knows other spellings of it
        gut = false;
    } else if (!kopfVollstaendig_) { // else behind the last chunk, where nothing matters
        gut = gut && feldGelesen(zeile);
    }
    if (!gut) {
        grund_ = Netzfehlerart::Unverstaendlich;
    }
    return gut;
}

bool Leitung::feldGelesen(const QByteArray &zeile)
{
    kopfVollstaendig_ = zeile.trimmed().isEmpty();
    // RFC 9112, 5.1: no blank before the colon. Some take such a line for the field, some do not.
    if (const qsizetype name = zeile.indexOf(':'); name > 0 && std::isspace(zeile[name - 1])) {
        return false;
    }
    if (const auto uebertragung = wertVon(zeile, "Transfer-Encoding")) {
        inStuecken_ = uebertragung->compare("chunked", Qt::CaseInsensitive) == 0;
        return inStuecken_ || uebertragung->compare("identity", Qt::CaseInsensitive) == 0;
    }
    if (const auto laenge = wertVon(zeile, "Content-Length")) {
        const bool gueltig = laengeGueltig(*laenge);
        const bool einig = antwort_.laenge.isEmpty() || antwort_.laenge == *laenge;
        antwort_.laenge = *laenge;
        return gueltig && einig;
    }
    if (const auto kodierung = wertVon(zeile, "Content-Encoding")) {
        antwort_.kodierung += (antwort_.kodierung.isEmpty() ? "" : ",") + *kodierung;
    }
    if (const auto ort = wertVon(zeile, "Location"); ort && antwort_.ort.isEmpty()) {
        antwort_.ort = *ort;
    }
    return true;
}

// RFC 9112, 4: "HTTP/1.1 200 OK" with a status of exactly three digits. What came before belongs
// to an interim answer. Only 101, a switch to another protocol, ends the exchange; nobody asked for
// one.
bool Leitung::statuszeileGelesen(const QByteArray &zeile)
{
    const qsizetype ort = zeile.indexOf(' ') + 1;
    const QByteArray status = zeile.sliced(ort).trimmed();
    const qsizetype ende = status.indexOf(' ');
    const QByteArray ziffern = ende < 0 ? status : status.first(ende);
    const bool drei = ort > 0 && ziffern.size() == 3 && nurZiffern(ziffern);
    antwort_.status = drei ? ziffern.toInt() : 0;
    kopfVollstaendig_ = false;
    inStuecken_ = false;
    antwort_.kodierung.clear();
    antwort_.ort.clear();
    antwort_.laenge.clear();
    return antwort_.status >= 100 && antwort_.status != 101;
}

size_t Leitung::inhalt(const char *bytes, size_t /*eins*/, size_t anzahl, void *selbst)
{
    auto *const leitung = static_cast<Leitung *>(selbst);
    const auto laenge = static_cast<qsizetype>(anzahl);
    if (leitung->antwort_.daten.size() + laenge > groessteAntwort) {
        leitung->grund_ = Netzfehlerart::ZuGross;
        return 0;
    }
    leitung->antwort_.daten.append(bytes, laenge);
    return anzahl;
}

int Leitung::socketGeaendert(CURL * /*griff*/, curl_socket_t socket, int was, void *selbst,
                             void *horcher)
{
    auto *const leitung = static_cast<Leitung *>(selbst);
    auto *h = static_cast<Horcher *>(horcher);
    if (was == CURL_POLL_REMOVE) {
        if (h) {
            h->aufgeben();
        }
        return 0;
    }
    if (!h) {
        h = new Horcher(socket, leitung,
                        [leitung](curl_socket_t s, int wie) { leitung->weiter(s, wie); });
        curl_multi_assign(leitung->schleife_, socket, h);
    }
    h->stellen(was);
    return 0;
}

int Leitung::weckerGeaendert(CURLM * /*schleife*/, long millisekunden, void *selbst)
{
    auto *const leitung = static_cast<Leitung *>(selbst);
    if (millisekunden < 0) {
        leitung->wecker_.stop();
    } else {
        leitung->wecker_.start(std::chrono::milliseconds(millisekunden));
    }
    return 0;
}

void Leitung::weiter(curl_socket_t socket, int was)
{
    if (beendet_) {
        return;
    }
    int offen = 0;
    if (curl_multi_socket_action(schleife_, socket, was, &offen) != CURLM_OK) {
        beenden(CURLE_OUT_OF_MEMORY);
        return;
    }
    while (const CURLMsg *nachricht = curl_multi_info_read(schleife_, &offen)) {
        if (nachricht->msg == CURLMSG_DONE) {
            beenden(nachricht->data.result);
            return;
        }
    }
}

// What libcurl takes for a whole answer and is none: header lines that break off, and under TLS an
// answer that only the end of the connection ends, where that was not the server's.
bool Leitung::abgebrochen() const
{
    const bool ohneInhalt = antwort_.status == 204 || antwort_.status == 304;
    const bool bisZumEnde = antwort_.laenge.isEmpty() && !inStuecken_ && !ohneInhalt;
    return antwort_.status < 200 || !kopfVollstaendig_ ||
           (bisZumEnde && ziel_.scheme() == u"https" && !tls_->verabschiedet());
}

void Leitung::beenden(CURLcode stand)
{
    beendet_ = true;
    antwort_.zertifikatBis = tls_->gueltigBis();
    if (stand == CURLE_OK && abgebrochen()) {
        stand = CURLE_PARTIAL_FILE;
    }
    const Ergebnis ergebnis =
        stand == CURLE_OK ? Ergebnis(std::move(antwort_)) : tl::unexpected(fehler(stand));
    QMetaObject::invokeMethod(
        this, [this, ergebnis] { fertig_(ergebnis); }, Qt::QueuedConnection);
}

} // namespace kalvaro
