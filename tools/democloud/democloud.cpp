#include "democloud.h"

#include "beispielwelt.h"
#include "httpserver.h"

#include <algorithm>
#include <utility>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype meisteAnfragen = 20'000; // kept for anfragen(); the oldest go first

Antwort amEnde()
{
    return fehlerAntwort(503, u"Die Cloud wird gerade beendet."_s);
}

} // namespace

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

int Democloud::port() const
{
    return port_;
}

QString Democloud::adresse() const
{
    return u"http://127.0.0.1:%1"_s.arg(port_);
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
    if (anfrage.pfad == u"/api/status"_s) {
        return statusAntwort(umstaende());
    }
    geaendert_.wait(sperre, [&] { return ende_ || szenario_ != Szenario::Stumm; });
    if (ende_) {
        return amEnde();
    }
    if (const auto serverfehler = erzwungenerServerfehler()) {
        return *serverfehler;
    }
    if (anfrage.pfad == u"/api/stand"_s) {
        return standAntwort(umstaende(), anfrage);
    }
    if (anfrage.pfad == u"/api/playlisten"_s) {
        return playlistenAntwort(umstaende(), anfrage);
    }
    if (anfrage.pfad == u"/api/einstellungen"_s) {
        return einstellungenAntwort(umstaende(), anfrage);
    }
    return abgleichen(anfrage, sperre);
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
    const bool fertig = dauerAbwarten(sperre);
    laufende_.remove(name);
    if (!fertig) {
        return amEnde();
    }
    geraet = finde(welt_, name); // the world may have been changed meanwhile
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    if (const auto serverfehler = erzwungenerServerfehler()) {
        return *serverfehler;
    }
    const Umstaende jetzige = umstaende();
    const QString anlass = inhalt->value(u"anlass"_s).toString();
    return abgleichAntwort(jetzige, *geraet,
                           szenario_ == Szenario::Keins
                               ? vollziehen(welt_, *geraet, anlass, jetzige.jetzt)
                               : erzwungen(szenario_, welt_, *geraet));
}

std::optional<Antwort> Democloud::erzwungenerServerfehler() const
{
    if (szenario_ == Szenario::Serverfehler) {
        return fehlerAntwort(500, u"Die Datenbank der Cloud antwortet nicht."_s);
    }
    return szenario_ == Szenario::ServerfehlerOhneText ? std::optional(Antwort{.status = 500})
                                                       : std::nullopt;
}

bool Democloud::dauerAbwarten(Sperre &sperre)
{
    using Takt = std::chrono::steady_clock;
    const Takt::time_point beginn = Takt::now();
    while (!ende_) {
        const std::chrono::duration<double> dauer(std::clamp(dauer_, 0.0, laengsteDauer));
        const Takt::time_point frist = beginn + std::chrono::duration_cast<Takt::duration>(dauer);
        if (szenario_ == Szenario::Stumm) {
            geaendert_.wait(sperre);
        } else if (Takt::now() >= frist) {
            return true;
        } else {
            geaendert_.wait_until(sperre, frist);
        }
    }
    return false;
}

Umstaende Democloud::umstaende()
{
    const QDateTime jetzt = uhr_();
    fortschreiben(welt_, jetzt);
    return {.welt = welt_, .laufende = laufende_, .jetzt = jetzt};
}

} // namespace kalvaro::democloud
