#include "dienst.h"

#include "andere.h"
#include "antworten.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <tl/expected.hpp>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype meisteAnfragen = 20'000; // kept for anfragen(); the oldest go first

struct Weg
{
    QStringView pfad;
    bool schreibend; // POST with a JSON object, otherwise GET
};

constexpr std::array wege{Weg{u"/api/status", false}, Weg{u"/api/abgleich", true},
                          Weg{u"/api/stand", false}, Weg{u"/api/playlisten", false},
                          Weg{u"/api/einstellungen", true}};

const Weg *wegZu(const QString &pfad)
{
    const auto *const treffer =
        std::find_if(wege.begin(), wege.end(), [&](const Weg &weg) { return weg.pfad == pfad; });
    return treffer == wege.end() ? nullptr : treffer;
}

bool methodePasst(const Weg &weg, const QByteArray &methode)
{
    return weg.schreibend ? methode == "POST" : methode == "GET" || methode == "HEAD";
}

Antwort mitJson(const QJsonObject &objekt, int status = 200)
{
    return {.status = status, .inhalt = alsJson(objekt)};
}

Antwort fehler(int status, const QString &text)
{
    return mitJson(fehlerAntwort(text), status);
}

Antwort amEnde()
{
    return fehler(503, u"Die Cloud wird gerade beendet."_s);
}

Antwort unbekanntesGeraet(const QString &name)
{
    return fehler(404, u"Die Cloud kennt kein Gerät „%1“."_s.arg(name));
}

// What stands before the body is looked at, or nothing.
std::optional<Antwort> abgelehnt(const Anfrage &anfrage, const QByteArray &schluessel)
{
    const Weg *const weg = wegZu(anfrage.pfad);
    if (weg == nullptr) {
        return fehler(404, u"Diese Adresse gibt es in der Cloud nicht."_s);
    }
    if (!methodePasst(*weg, anfrage.methode)) {
        Antwort antwort = fehler(405, u"Die Methode „%1“ ist hier nicht erlaubt."_s.arg(
                                          QString::fromUtf8(anfrage.methode)));
        antwort.erlaubt = weg->schreibend ? "POST" : "GET, HEAD";
        return antwort;
    }
    const QByteArray genannt = anfrage.kopfzeile("X-Schluessel");
    if (genannt != schluessel) {
        return fehler(401, genannt.isEmpty() ? u"Der Schlüssel fehlt."_s
                                             : u"Der Schlüssel stimmt nicht."_s);
    }
    return std::nullopt;
}

// The body as an object that has a text under each of `texte`, or the answer 400.
tl::expected<QJsonObject, Antwort> objektAus(const QByteArray &inhalt, const QStringList &texte)
{
    QJsonParseError syntax;
    const QJsonDocument dokument = QJsonDocument::fromJson(inhalt, &syntax);
    if (syntax.error != QJsonParseError::NoError) {
        return tl::unexpected(fehler(400, u"Der Inhalt der Anfrage ist kein gültiges JSON."_s));
    }
    if (!dokument.isObject()) {
        return tl::unexpected(fehler(400, u"Der Inhalt der Anfrage ist kein JSON-Objekt."_s));
    }
    const QJsonObject objekt = dokument.object();
    for (const QString &schluessel : texte) {
        if (!objekt.value(schluessel).isString()) {
            return tl::unexpected(
                fehler(400, u"In der Anfrage fehlt der Text „%1“."_s.arg(schluessel)));
        }
    }
    return objekt;
}

std::optional<Antwort> erzwungenerServerfehler(Szenario szenario)
{
    if (szenario == Szenario::Serverfehler) {
        return fehler(500, u"Die Datenbank der Cloud antwortet nicht."_s);
    }
    if (szenario == Szenario::ServerfehlerOhneText) {
        return Antwort{.status = 500};
    }
    return std::nullopt;
}

} // namespace

QByteArray Anfrage::kopfzeile(const QByteArray &name) const
{
    const auto treffer = std::find_if(kopf.begin(), kopf.end(), [&](const auto &zeile) {
        return zeile.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return treffer == kopf.end() ? QByteArray() : treffer->second;
}

QString Anfrage::parameter(const QByteArray &name) const
{
    const QList<QByteArray> paare = abfrage.split('&');
    for (const QByteArray &paar : paare) {
        const qsizetype gleich = paar.indexOf('=');
        if (paar.left(std::max<qsizetype>(gleich, 0)) == name) {
            return QString::fromUtf8(QByteArray::fromPercentEncoding(paar.mid(gleich + 1)));
        }
    }
    return {};
}

Dienst::Dienst(Welt welt, QByteArray schluessel, std::function<QDateTime()> uhr)
    : schluessel_(std::move(schluessel))
    , uhr_(std::move(uhr))
    , welt_(std::move(welt))
{
    if (!welt_.beginn.isValid()) {
        welt_.beginn = uhr_();
    }
}

bool Dienst::brauchtInhalt(const Anfrage &anfrage) const
{
    return anfrage.methode == "POST" && !abgelehnt(anfrage, schluessel_);
}

Antwort Dienst::antworten(const Anfrage &anfrage)
{
    Sperre sperre(mutex_);
    merken(anfrage);
    if (const auto ablehnung = abgelehnt(anfrage, schluessel_)) {
        return *ablehnung;
    }
    const auto feste = welt_.festeAntworten.constFind(anfrage.pfad);
    if (feste != welt_.festeAntworten.cend()) {
        return {.status = feste->status, .inhalt = feste->inhalt};
    }
    const QDateTime jetzt = uhr_();
    fortschreiben(welt_, jetzt);
    if (anfrage.pfad == u"/api/status"_s) {
        return mitJson(statusAntwort(welt_, jetzt));
    }
    geaendert_.wait(sperre, [&] { return ende_ || szenario_ != Szenario::Stumm; });
    if (ende_) {
        return amEnde();
    }
    if (const auto serverfehler = erzwungenerServerfehler(szenario_)) {
        return *serverfehler;
    }
    return weiterleiten(anfrage, sperre);
}

Antwort Dienst::weiterleiten(const Anfrage &anfrage, Sperre &sperre)
{
    if (anfrage.pfad == u"/api/stand"_s) {
        return stand(anfrage.parameter("geraet"));
    }
    if (anfrage.pfad == u"/api/playlisten"_s) {
        return playlisten(anfrage.parameter("geraet"));
    }
    const bool abgleich = anfrage.pfad == u"/api/abgleich"_s;
    const auto inhalt =
        objektAus(anfrage.inhalt, abgleich ? QStringList{u"geraet"_s, u"anlass"_s, u"version"_s}
                                           : QStringList{u"geraet"_s});
    if (!inhalt) {
        return inhalt.error();
    }
    return abgleich ? abgleichen(*inhalt, sperre) : einstellungen(*inhalt);
}

Antwort Dienst::abgleichen(const QJsonObject &inhalt, Sperre &sperre)
{
    const QString name = inhalt.value(u"geraet"_s).toString();
    const Geraet *const geraet = finde(welt_, name);
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    if (szenario_ == Szenario::LaeuftSchon || laufende_.contains(name)) {
        return abgleichMelden(*geraet, laeuftSchon(welt_, *geraet));
    }
    laufende_.insert(name);
    const bool fertig = dauerAbwarten(sperre);
    laufende_.remove(name);
    return fertig ? abgeschlossen(inhalt) : amEnde();
}

// The world may have been changed while the sync was under way.
Antwort Dienst::abgeschlossen(const QJsonObject &inhalt)
{
    const QString name = inhalt.value(u"geraet"_s).toString();
    Geraet *const geraet = finde(welt_, name);
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    if (const auto serverfehler = erzwungenerServerfehler(szenario_)) {
        return *serverfehler;
    }
    const QDateTime jetzt = uhr_();
    fortschreiben(welt_, jetzt);
    const Abgleich abgleich =
        szenario_ == Szenario::Keins
            ? vollziehen(welt_, *geraet, inhalt.value(u"anlass"_s).toString(), jetzt)
            : erzwungen(szenario_, welt_, *geraet);
    return abgleichMelden(*geraet, abgleich);
}

Antwort Dienst::abgleichMelden(const Geraet &geraet, const Abgleich &abgleich)
{
    const QJsonArray andere = andereGeraete(welt_, geraet.name, uhr_(), laufende_);
    return mitJson(abgleichAntwort(welt_, geraet, abgleich, andere));
}

Antwort Dienst::stand(const QString &name)
{
    if (name.isEmpty()) {
        return fehler(400, u"In der Anfrage fehlt der Parameter „geraet“."_s);
    }
    const Geraet *const geraet = finde(welt_, name);
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    return mitJson(standAntwort(welt_, *geraet, andereGeraete(welt_, name, uhr_(), laufende_)));
}

Antwort Dienst::playlisten(const QString &name)
{
    const QString gemeint = name.isEmpty() ? welt_.geraete.value(0).name : name;
    const Geraet *const geraet = finde(welt_, gemeint);
    if (geraet == nullptr) {
        return unbekanntesGeraet(gemeint);
    }
    return {.status = 200, .inhalt = playlistenAntwort(welt_, *geraet)};
}

Antwort Dienst::einstellungen(const QJsonObject &inhalt)
{
    const QJsonValue lokal = inhalt.value(u"lokal"_s);
    const QJsonArray uuids = lokal.toArray();
    const bool texte = std::all_of(uuids.begin(), uuids.end(),
                                   [](const QJsonValue &uuid) { return uuid.isString(); });
    if (!lokal.isArray() || !texte) {
        return fehler(400, u"In der Anfrage fehlt die Liste „lokal“ von Texten."_s);
    }
    const QString name = inhalt.value(u"geraet"_s).toString();
    Geraet *const geraet = finde(welt_, name);
    if (geraet == nullptr) {
        return unbekanntesGeraet(name);
    }
    geraet->lokal.clear();
    for (const QJsonValue uuid : uuids) {
        geraet->lokal.append(uuid.toString());
    }
    geraet->lokal.removeDuplicates();
    return mitJson(einstellungenAntwort(*geraet));
}

bool Dienst::dauerAbwarten(Sperre &sperre)
{
    using Takt = std::chrono::steady_clock;
    const Takt::time_point beginn = Takt::now();
    while (!ende_) {
        const Takt::time_point frist = beginn + std::chrono::duration_cast<Takt::duration>(dauer_);
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

void Dienst::merken(const Anfrage &anfrage)
{
    if (anfragen_.size() >= meisteAnfragen) {
        anfragen_.removeFirst();
    }
    anfragen_.append(anfrage);
}

void Dienst::beenden()
{
    const std::lock_guard sperre(mutex_);
    ende_ = true;
    geaendert_.notify_all();
}

void Dienst::beginnen()
{
    const std::lock_guard sperre(mutex_);
    ende_ = false;
}

void Dienst::setDauer(double sekunden)
{
    const std::lock_guard sperre(mutex_);
    dauer_ = std::chrono::duration<double>(std::clamp(sekunden, 0.0, laengsteDauer));
    geaendert_.notify_all();
}

void Dienst::setSzenario(Szenario szenario)
{
    const std::lock_guard sperre(mutex_);
    szenario_ = szenario;
    geaendert_.notify_all();
}

Welt Dienst::welt() const
{
    const std::lock_guard sperre(mutex_);
    return welt_;
}

void Dienst::aendern(const std::function<void(Welt &)> &aenderung)
{
    const std::lock_guard sperre(mutex_);
    aenderung(welt_);
}

qsizetype Dienst::laufendeAbgleiche() const
{
    const std::lock_guard sperre(mutex_);
    return laufende_.size();
}

QList<Anfrage> Dienst::anfragen() const
{
    const std::lock_guard sperre(mutex_);
    return anfragen_;
}

void Dienst::anfragenVergessen()
{
    const std::lock_guard sperre(mutex_);
    anfragen_.clear();
}
