#include "server/netztransport.h"

#include "server/netzfehler.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype groessteAntwort = 64 * 1024 * 1024;
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
        if (istLoopback(ziel.peerHostName())) {
            return {QNetworkProxy::NoProxy};
        }
        return systemProxyForQuery(ziel);
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

// One exchange with the redirects that it follows. Lives as a child of its owner.
class Austausch final : public QObject
{
public:
    Austausch(const Netzanfrage &was, QObject *besitzer, Transport::Rueckruf ruf)
        : QObject(besitzer)
        , anfrage(was)
        , fertig(std::move(ruf))
    {
        netz.setProxyFactory(new Proxywahl);
        netz.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    }

    void beginnen(Uhr &uhr)
    {
        frist = uhr.nach(anfrage.limit, [this] {
            beenden(
                tl::unexpected(Netzfehler{true, netzfehlertext(QNetworkReply::TimeoutError, {})}));
        });
        if (anfrage.url.scheme() != u"http" && anfrage.url.scheme() != u"https") {
            scheiternLassen(QNetworkReply::ProtocolUnknownError);
        } else if (anfrage.url.host().isEmpty()) {
            scheiternLassen(QNetworkReply::HostNotFoundError);
        } else {
            senden();
        }
    }

private:
    void scheiternLassen(QNetworkReply::NetworkError art)
    {
        QMetaObject::invokeMethod(
            this, [this, art] { scheitern(netzfehlertext(art, {})); }, Qt::QueuedConnection);
    }

    [[nodiscard]] QNetworkRequest kopfzeilen() const
    {
        QNetworkRequest r(anfrage.url);
        r.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        r.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
        r.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        r.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        r.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
        r.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        // Our own bound on the size of an answer holds for compressed ones as well.
        r.setDecompressedSafetyCheckThreshold(-1);
        r.setRawHeader("Connection"_ba, "close"_ba);
        r.setRawHeader("Accept-Language"_ba, "de"_ba);
        for (const auto &[name, wert] : anfrage.kopf) {
            r.setRawHeader(name, wert);
        }
        return r;
    }

    void senden()
    {
        gesendet = false;
        daten.clear();
        antwort = netz.sendCustomRequest(kopfzeilen(), anfrage.methode,
                                         anfrage.body.value_or(QByteArray()));
        connect(antwort, &QNetworkReply::readyRead, this, &Austausch::lesen);
        connect(antwort, &QNetworkReply::finished, this, &Austausch::auswerten);
        // QtNetwork sends a request again when the server closes without an answer. A sync asked
        // for twice is not what the user asked for, so the second attempt ends the exchange.
        connect(antwort, &QNetworkReply::requestSent, this, [this] { gesendet = true; });
        connect(antwort, &QNetworkReply::socketStartedConnecting, this, [this] {
            if (gesendet) {
                scheitern(netzfehlertext(QNetworkReply::RemoteHostClosedError, {}));
            }
        });
    }

    void lesen()
    {
        daten += antwort->readAll();
        if (daten.size() > groessteAntwort) {
            scheitern(u"Die Antwort der Cloud ist zu groß."_s);
        }
    }

    void auswerten()
    {
        lesen();
        if (!fertig) {
            return;
        }
        const auto art = antwort->error();
        const int status = antwort->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (art == QNetworkReply::TimeoutError) {
            beenden(tl::unexpected(Netzfehler{true, {}}));
        } else if (art != QNetworkReply::NoError && !(status >= 400 && istStatusmeldung(art))) {
            scheitern(netzfehlertext(art, antwort->errorString()));
        } else if (unvollstaendig()) {
            scheitern(netzfehlertext(QNetworkReply::RemoteHostClosedError, {}));
        } else if (const QUrl ziel = sprungziel(status); ziel.isValid()) {
            springen(status, ziel);
        } else {
            beenden(Netzantwort{status, daten});
        }
    }

    // Whether the connection ended before the announced length; QtNetwork calls that a success.
    [[nodiscard]] bool unvollstaendig() const
    {
        bool bekannt = false;
        const qint64 laenge = antwort->rawHeader("Content-Length"_ba).toLongLong(&bekannt);
        const bool umgewandelt = antwort->hasRawHeader("Content-Encoding"_ba);
        return bekannt && !umgewandelt && anfrage.methode != "HEAD" && daten.size() < laenge;
    }

    [[nodiscard]] QUrl sprungziel(int status) const
    {
        const bool sprung =
            status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
        const QUrl ort = antwort->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        if (!sprung || ort.isEmpty()) {
            return {};
        }
        const QUrl ziel = anfrage.url.resolved(ort);
        return sprungErlaubt(anfrage.url, ziel) ? ziel : QUrl();
    }

    void springen(int status, const QUrl &ziel)
    {
        if (++spruenge > meisteSpruenge) {
            scheitern(netzfehlertext(QNetworkReply::TooManyRedirectsError, {}));
            return;
        }
        // RFC 9110, 15.4: after 303, and by custom after 301 and 302 to a POST, a GET follows.
        if (status == 303 || (status < 303 && anfrage.methode == "POST")) {
            anfrage.methode = "GET"_ba;
            anfrage.body.reset();
            anfrage.kopf.removeIf([](const auto &zeile) { return zeile.first == "Content-Type"; });
        }
        anfrage.url = ziel;
        antwort->deleteLater();
        senden();
    }

    void scheitern(const QString &text) { beenden(tl::unexpected(Netzfehler{false, text})); }

    void beenden(Transport::Ergebnis ergebnis)
    {
        if (!fertig) {
            return;
        }
        const Transport::Rueckruf ruf = std::exchange(fertig, nullptr);
        frist.reset();
        if (antwort) {
            antwort->disconnect(this);
            antwort->abort();
        }
        deleteLater();
        ruf(std::move(ergebnis));
    }

    Netzanfrage anfrage;        // changes with each redirect
    Transport::Rueckruf fertig; // empty once called
    Weckruf frist;
    QNetworkAccessManager netz;
    QNetworkReply *antwort = nullptr; // child of netz
    QByteArray daten;
    int spruenge = 0;
    bool gesendet = false;
};

} // namespace

Netztransport::Netztransport(Uhr &zeit)
    : uhr(zeit)
{
}

void Netztransport::senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig)
{
    (new Austausch(anfrage, besitzer, std::move(fertig)))->beginnen(uhr);
}

} // namespace kalvaro
