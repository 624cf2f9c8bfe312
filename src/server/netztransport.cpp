#include "server/netztransport.h"

#include "foundation/einmalruf.h"
#include "foundation/nebenarbeit.h"
#include "server/entpacken.h"
#include "server/leitung.h"
#include "server/systemproxy.h"
#include "server/umleitung.h"

#include <algorithm>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype groessterKlartext = qsizetype{64} * 1024 * 1024;

// What becomes no longer than this is unpacked at once.
constexpr qsizetype sofortHoechstens = qsizetype{256} * 1024;

constexpr int meisteSpruenge = 10;

// How long the system may think about its proxy. The exchange must still have time to do without.
constexpr Sekunden laengsteProxyfrage{2};

using Klartext = tl::expected<QByteArray, Entpackfehler>;

// Whether the header line can bring no further lines with it.
bool einzeilig(const Kopfzeile &zeile)
{
    const auto steuert = [](char z) { return (z >= 0 && z < ' ' && z != '\t') || z == '\x7f'; };
    return std::none_of(zeile.first.begin(), zeile.first.end(), steuert) &&
           std::none_of(zeile.second.begin(), zeile.second.end(), steuert);
}

// Why `anfrage` must not leave; absent when it may.
std::optional<Netzfehlerart> mangel(const Netzanfrage &anfrage)
{
    if (anfrage.url.scheme() != u"http" && anfrage.url.scheme() != u"https") {
        return Netzfehlerart::Schema;
    }
    if (anfrage.url.host().isEmpty()) {
        return Netzfehlerart::ServerUnbekannt;
    }
    const QString anmeldung =
        anfrage.url.userName(QUrl::FullyDecoded) + anfrage.url.password(QUrl::FullyDecoded);
    if (std::any_of(anmeldung.begin(), anmeldung.end(), [](QChar z) { return z < u' '; })) {
        return Netzfehlerart::Adresse;
    }
    if (anfrage.url.hasFragment()) {
        return Netzfehlerart::Fragment;
    }
    if (!std::all_of(anfrage.kopf.begin(), anfrage.kopf.end(), einzeilig)) {
        return Netzfehlerart::Schluessel;
    }
    return {};
}

// Nothing has been sent, and the next way that the system names may be open.
bool proxyFehlt(const Netzfehler &fehler)
{
    return fehler.art == Netzfehlerart::ProxyUnerreichbar ||
           fehler.art == Netzfehlerart::ProxyUnbekannt;
}

// One exchange with the redirects that it follows.
class Austausch final : public Einmalruf<Transport::Ergebnis>
{
public:
    Austausch(Netzanfrage anfrage, Uhr &uhr, QObject *besitzer, Transport::Rueckruf fertig)
        : Einmalruf(besitzer, std::move(fertig))
        , anfrage_(std::move(anfrage))
        , uhr_(uhr)
    {
    }

    void beginnen()
    {
        frist_ = uhr_.nach(anfrage_.limit, [this] {
            beenden(tl::unexpected(Netzfehler{.zeitUeberschritten = true}));
        });
        if (const auto art = mangel(anfrage_)) {
            scheitern(netzfehler(*art));
        } else {
            wegSuchen();
        }
    }

private:
    void wegSuchen()
    {
        const Sekunden geduld = std::min(laengsteProxyfrage, anfrage_.limit / 2);
        systemproxy(anfrage_.url, geduld, uhr_, this, [this](const Proxyliste &liste) {
            wege_ = liste;
            senden();
        });
    }

    void senden()
    {
        if (beantwortet()) {
            return;
        }
        const QNetworkProxy weg = wege_.takeFirst();
        durchProxy_ = weg.type() != QNetworkProxy::NoProxy;
        leitung_ = std::make_unique<Leitung>(
            anfrage_, weg, [this](const Leitung::Ergebnis &ergebnis) { auswerten(ergebnis); });
    }

    void auswerten(const Leitung::Ergebnis &ergebnis)
    {
        if (beantwortet()) {
            return;
        }
        if (!ergebnis) {
            misslungen(ergebnis.error());
        } else if (const auto ziel = sprungziel(anfrage_.url, ergebnis->status, ergebnis->ort)) {
            springen(ergebnis->status, *ziel);
        } else {
            abliefern(*ergebnis);
        }
    }

    // Where no way leads there, the first one is what the user should look at.
    void misslungen(const Netzfehler &fehler)
    {
        if (!ersterFehler_) {
            ersterFehler_ = fehler;
        }
        if (proxyFehlt(fehler) && !wege_.isEmpty()) {
            leitung_.release()->deleteLater();
            senden();
        } else {
            scheitern(*ersterFehler_);
        }
    }

    void springen(int status, const QUrl &ziel)
    {
        if (++spruenge_ > meisteSpruenge) {
            scheitern(netzfehler(Netzfehlerart::ZuVieleSpruenge));
            return;
        }
        // RFC 9110, 15.4: after 303, and by custom after 301 and 302 to a POST, a GET follows.
        if (status == 303 || (status < 303 && anfrage_.methode == "POST")) {
            anfrage_.methode = "GET"_ba;
            anfrage_.body.reset();
            anfrage_.kopf.removeIf([](const auto &zeile) { return zeile.first == "Content-Type"; });
        }
        anfrage_.url = ziel;
        leitung_.release()->deleteLater();
        wegSuchen();
    }

    void abliefern(const Leitung::Antwort &antwort)
    {
        if (antwort.status == 407 && durchProxy_) {
            scheitern(netzfehler(Netzfehlerart::ProxyAnmeldung));
            return;
        }
        auto klartext = entpacken(antwort.daten, antwort.kodierung, sofortHoechstens);
        if (klartext || klartext.error() != Entpackfehler::ZuGross) {
            ausgepackt(antwort, std::move(klartext));
            return;
        }
        new Nebenarbeit<Klartext>(
            [antwort](const Abbruch &) {
                return entpacken(antwort.daten, antwort.kodierung, groessterKlartext);
            },
            this,
            [this, antwort](Klartext ganzer) {
                if (!beantwortet()) {
                    ausgepackt(antwort, std::move(ganzer));
                }
            });
    }

    void ausgepackt(const Leitung::Antwort &antwort, Klartext klartext)
    {
        if (klartext) {
            beenden(Netzantwort{antwort.status, *std::move(klartext), antwort.zertifikatBis});
        } else {
            scheitern(netzfehler(klartext.error() == Entpackfehler::ZuGross
                                     ? Netzfehlerart::ZuGross
                                     : Netzfehlerart::Unverstaendlich));
        }
    }

    void scheitern(const Netzfehler &fehler) { beenden(tl::unexpected(fehler)); }

    void beenden(Transport::Ergebnis ergebnis)
    {
        frist_.reset();
        if (leitung_) {
            leitung_.release()->deleteLater();
        }
        antworten(std::move(ergebnis));
    }

    Netzanfrage anfrage_; // changes with each redirect
    Uhr &uhr_;
    Weckruf frist_;
    Proxyliste wege_; // those not tried yet
    std::optional<Netzfehler> ersterFehler_{};
    bool durchProxy_ = false;
    std::unique_ptr<Leitung> leitung_; // one for each request
    int spruenge_ = 0;
};

} // namespace

Netztransport::Netztransport(Uhr &uhr)
    : uhr_(uhr)
{
}

void Netztransport::senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig)
{
    (new Austausch(anfrage, uhr_, besitzer, std::move(fertig)))->beginnen();
}

} // namespace kalvaro
