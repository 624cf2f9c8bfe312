#include "democloud.h"

#include "beispielwelt.h"
#include "httpserver.h"

#include <algorithm>
#include <utility>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

Democloud::Democloud(DemocloudOptionen optionen)
    : schluessel_(optionen.schluessel.toUtf8())
    , uhr_(std::move(optionen.uhr))
    , port_(optionen.port)
    , welt_(optionen.welt ? *std::move(optionen.welt) : beispielwelt(uhr_()))
    , szenario_(optionen.szenario)
    , dauer_(optionen.dauer)
{
    if (!welt_.beginn.isValid()) {
        welt_.beginn = uhr_();
    }
}

Democloud::~Democloud()
{
    beenden();
}

tl::expected<void, QString> Democloud::starten()
{
    if (server_) {
        return {};
    }
    {
        const Sperre sperre(mutex_);
        ende_ = false;
    }
    auto server =
        std::make_unique<Httpserver>([this](const Anfrage &anfrage) { return antworten(anfrage); });
    return server->starten(port_).map([&](int port) {
        port_ = port;
        server_ = std::move(server);
    });
}

void Democloud::beenden()
{
    {
        const Sperre sperre(mutex_);
        ende_ = true;
        geaendert_.notify_all();
    }
    server_.reset();
}

QList<Anfrage> Democloud::anfragen() const
{
    const Sperre sperre(mutex_);
    return anfragen_;
}

void Democloud::anfragenVergessen()
{
    const Sperre sperre(mutex_);
    anfragen_.clear();
}

qsizetype Democloud::laufendeAbgleiche() const
{
    const Sperre sperre(mutex_);
    return laufende_.size();
}

void Democloud::setDauer(double sekunden)
{
    const Sperre sperre(mutex_);
    dauer_ = sekunden;
    geaendert_.notify_all();
}

void Democloud::setSzenario(Szenario szenario)
{
    const Sperre sperre(mutex_);
    szenario_ = szenario;
    geaendert_.notify_all();
}

Welt Democloud::welt() const
{
    const Sperre sperre(mutex_);
    return welt_;
}

void Democloud::aendern(const std::function<void(Welt &)> &aenderung)
{
    const Sperre sperre(mutex_);
    aenderung(welt_);
}

Antwort Democloud::antworten(const Anfrage &anfrage)
{
    Sperre sperre(mutex_);
    if (anfragen_.size() >= meisteAnfragen) {
        anfragen_.removeFirst();
    }
    anfragen_.append(anfrage);
    if (const auto abgelehnt = ablehnung(anfrage, schluessel_)) {
        return *abgelehnt;
    }
    const auto feste = welt_.festeAntworten.constFind(anfrage.pfad);
    if (feste != welt_.festeAntworten.cend()) {
        return *feste;
    }
    if (anfrage.pfad != u"/api/status"_s) {
        geaendert_.wait(sperre, [&] { return ende_ || szenario_ != Szenario::Stumm; });
        if (const auto gestoert = stoerung()) {
            return *gestoert;
        }
    }
    return anfrage.pfad == u"/api/abgleich"_s ? abgleichen(anfrage, sperre)
                                              : antwort(umstaende(), anfrage);
}

Antwort Democloud::abgleichen(const Anfrage &anfrage, Sperre &sperre)
{
    const auto inhalt = objektAus(anfrage.inhalt, {u"geraet"_s, u"anlass"_s, u"version"_s});
    if (!inhalt) {
        return inhalt.error();
    }
    const QString name = inhalt->value(u"geraet"_s).toString();
    Geraet *geraet = finde(welt_, name);
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    if (szenario_ == Szenario::LaeuftSchon || laufende_.contains(name)) {
        return abgleichAntwort(umstaende(), *geraet, abgleichMit(*geraet, u"laeuft_schon"_s));
    }
    laufende_.insert(name);
    dauerAbwarten(sperre);
    laufende_.remove(name);
    if (const auto gestoert = stoerung()) {
        return *gestoert;
    }
    geraet = finde(welt_, name); // the world may have been changed meanwhile
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    const Umstaende jetzige = umstaende();
    const QString anlass = inhalt->value(u"anlass"_s).toString();
    return abgleichAntwort(jetzige, *geraet,
                           szenario_ == Szenario::Keins
                               ? vollziehen(welt_, *geraet, anlass, jetzige.jetzt)
                               : erzwungen(szenario_, welt_, *geraet));
}

void Democloud::dauerAbwarten(Sperre &sperre)
{
    using Takt = std::chrono::steady_clock;
    const auto beginn = Takt::now();
    const auto frist = [&] {
        const bool stumm = szenario_ == Szenario::Stumm; // for a day, that is
        const double dauer = stumm ? laengsteDauer : std::clamp(dauer_, 0.0, laengsteDauer);
        return beginn + std::chrono::round<Takt::duration>(std::chrono::duration<double>(dauer));
    };
    while (!ende_ && Takt::now() < frist()) {
        geaendert_.wait_until(sperre, frist());
    }
}

std::optional<Antwort> Democloud::stoerung() const
{
    if (ende_) {
        return fehlerAntwort(503, u"Die Cloud wird gerade beendet."_s);
    }
    if (szenario_ == Szenario::Serverfehler) {
        return fehlerAntwort(500, u"Die Datenbank der Cloud antwortet nicht."_s);
    }
    return szenario_ == Szenario::ServerfehlerOhneText ? std::optional(Antwort{.status = 500})
                                                       : std::nullopt;
}

Umstaende Democloud::umstaende()
{
    const QDateTime jetzt = uhr_();
    fortschreiben(welt_, jetzt);
    return {.welt = welt_, .laufende = laufende_, .jetzt = jetzt};
}

} // namespace kalvaro::democloud
