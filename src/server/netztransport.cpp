#include "server/netztransport.h"

#include "foundation/einmalruf.h"
#include "server/einmalbody.h"
#include "server/entpacken.h"
#include "server/netzfehler.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype groessteAntwort = qsizetype{64} * 1024 * 1024;
constexpr int meisteSpruenge = 10;

bool istLoopback(const QString &host)
{
    return host == u"localhost" || QHostAddress(host).isLoopback();
}

class Proxywahl final : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &ziel) override
    {
        QList<QNetworkProxy> liste{QNetworkProxy::NoProxy};
        if (!istLoopback(ziel.peerHostName())) {
            liste = systemProxyForQuery(ziel);
        }
        // The application-wide proxy, of which we set none, goes straight to the server too, but
        // over a buffered socket: over the unbuffered one of NoProxy, QtNetwork never finishes an
        // exchange whose connection is reset while the header lines are written.
        std::replace(liste.begin(), liste.end(), QNetworkProxy(QNetworkProxy::NoProxy),
                     QNetworkProxy(QNetworkProxy::DefaultProxy));
        return liste;
    }
};

int hafen(const QUrl &url)
{
    return url.port(url.scheme() == u"https" ? 443 : 80);
}

bool sprungErlaubt(const QUrl &von, const QUrl &nach)
{
    if (!nach.isValid() || von.host() != nach.host()) {
        return false;
    }
    if (von.scheme() == nach.scheme()) {
        return hafen(von) == hafen(nach);
    }
    return von.scheme() == u"http" && nach.scheme() == u"https";
}

// Whether the header line can bring no further lines with it.
bool einzeilig(const Kopfzeile &zeile)
{
    const auto steuert = [](char z) { return (z >= 0 && z < ' ' && z != '\t') || z == '\x7f'; };
    return std::none_of(zeile.first.begin(), zeile.first.end(), steuert) &&
           std::none_of(zeile.second.begin(), zeile.second.end(), steuert);
}

// One exchange with the redirects that it follows.
class Austausch final : public Einmalruf<Transport::Ergebnis>
{
public:
    Austausch(Netzanfrage anfrage, QObject *besitzer, Transport::Rueckruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , anfrage_(std::move(anfrage))
    {
    }

    void beginnen(Uhr &uhr)
    {
        frist_ = uhr.nach(anfrage_.limit, [this] { ueberschreiten(); });
        const auto &kopf = anfrage_.kopf;
        if (anfrage_.url.scheme() != u"http" && anfrage_.url.scheme() != u"https") {
            scheitern(QNetworkReply::ProtocolUnknownError);
        } else if (anfrage_.url.host().isEmpty()) {
            scheitern(QNetworkReply::HostNotFoundError);
        } else if (!std::all_of(kopf.begin(), kopf.end(), einzeilig)) {
            scheitern(u"Der Schlüssel enthält unzulässige Zeichen."_s);
        } else {
            senden();
        }
    }

private:
    [[nodiscard]] QNetworkRequest kopfzeilen() const
    {
        QNetworkRequest r(anfrage_.url);
        r.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        r.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
        r.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        r.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        r.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
        r.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        r.setRawHeader("Connection"_ba, "close"_ba);
        // Naming the codings ourselves leaves decoding to us: QtNetwork takes a compressed answer
        // that was cut short for a whole one.
        r.setRawHeader("Accept-Encoding"_ba, "gzip, deflate"_ba);
        r.setRawHeader("Accept-Language"_ba, "de"_ba);
        for (const auto &[name, wert] : anfrage_.kopf) {
            r.setRawHeader(name, wert);
        }
        return r;
    }

    void senden()
    {
        daten_.clear();
        netz_ = new QNetworkAccessManager(this);
        netz_->setProxyFactory(new Proxywahl);
        netz_->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
        auto *body = new Einmalbody(anfrage_.body.value_or(QByteArray()), netz_);
        antwort_ = netz_->sendCustomRequest(kopfzeilen(), anfrage_.methode, body);
        connect(antwort_, &QNetworkReply::metaDataChanged, body, &Einmalbody::beantwortet);
        connect(antwort_, &QNetworkReply::readyRead, this, &Austausch::lesen);
        connect(antwort_, &QNetworkReply::finished, this, &Austausch::auswerten);
    }

    void lesen()
    {
        daten_ += antwort_->readAll();
        if (daten_.size() > groessteAntwort) {
            scheitern(Entpackfehler::ZuGross);
        }
    }

    void auswerten()
    {
        lesen();
        if (beantwortet()) {
            return;
        }
        const auto art = antwort_->error();
        const int status = antwort_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (art == QNetworkReply::TimeoutError) {
            ueberschreiten();
        } else if (art != QNetworkReply::NoError && !istStatusmeldung(art)) {
            scheitern(art);
        } else if (status < 200 || status > 999) {
            scheitern(QNetworkReply::ProtocolFailure);
        } else if (const QUrl ziel = sprungziel(status); ziel.isValid()) {
            springen(status, ziel);
        } else {
            abliefern(status);
        }
    }

    [[nodiscard]] QUrl sprungziel(int status) const
    {
        const bool sprung =
            status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
        const QUrl ort = antwort_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        if (!sprung || ort.isEmpty()) {
            return {};
        }
        const QUrl ziel = anfrage_.url.resolved(ort);
        return sprungErlaubt(anfrage_.url, ziel) ? ziel : QUrl();
    }

    void springen(int status, const QUrl &ziel)
    {
        if (++spruenge_ > meisteSpruenge) {
            scheitern(QNetworkReply::TooManyRedirectsError);
            return;
        }
        // RFC 9110, 15.4: after 303, and by custom after 301 and 302 to a POST, a GET follows.
        if (status == 303 || (status < 303 && anfrage_.methode == "POST")) {
            anfrage_.methode = "GET"_ba;
            anfrage_.body.reset();
            anfrage_.kopf.removeIf([](const auto &zeile) { return zeile.first == "Content-Type"; });
        }
        anfrage_.url = ziel;
        // The next request must not meet the connection of this one while it closes.
        antwort_->disconnect(this);
        netz_->deleteLater();
        senden();
    }

    void abliefern(int status)
    {
        const auto klartext =
            entpacken(daten_, antwort_->rawHeader("Content-Encoding"_ba), groessteAntwort);
        if (klartext) {
            const QSslCertificate zertifikat = antwort_->sslConfiguration().peerCertificate();
            beenden(Netzantwort{status, *klartext, zertifikat.expiryDate()});
        } else {
            scheitern(klartext.error());
        }
    }

    void ueberschreiten() { beenden(tl::unexpected(Netzfehler{true, {}})); }

    void scheitern(QNetworkReply::NetworkError art)
    {
        scheitern(netzfehlertext(art, antwort_ ? antwort_->errorString() : QString()));
    }

    void scheitern(Entpackfehler fehler)
    {
        switch (fehler) {
        case Entpackfehler::Unlesbar:
            scheitern(QNetworkReply::ProtocolFailure);
            break;
        case Entpackfehler::ZuGross:
            scheitern(u"Die Antwort der Cloud ist zu groß."_s);
            break;
        }
    }

    void scheitern(const QString &text) { beenden(tl::unexpected(Netzfehler{false, text})); }

    // The owner may destroy this object and the reply with it, and a reply must not be destroyed by
    // its own signal: the answer goes out from the event loop.
    void beenden(Transport::Ergebnis ergebnis)
    {
        frist_.reset();
        if (antwort_) {
            antwort_->disconnect(this);
        }
        antworten(std::move(ergebnis));
    }

    Netzanfrage anfrage_; // changes with each redirect
    Weckruf frist_;
    QNetworkAccessManager *netz_ = nullptr; // one for each request
    QNetworkReply *antwort_ = nullptr;      // child of netz
    QByteArray daten_;                      // as received: still with its content coding
    int spruenge_ = 0;
};

} // namespace

Netztransport::Netztransport(Uhr &uhr)
    : uhr_(uhr)
{
}

void Netztransport::senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig)
{
    (new Austausch(anfrage, besitzer, std::move(fertig)))->beginnen(uhr_);
}

} // namespace kalvaro
