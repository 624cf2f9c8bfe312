#include "antworten.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

// These take a POST with a JSON object; the others are read.
bool schreibend(const QString &weg)
{
    return weg == u"/api/abgleich"_s || weg == u"/api/einstellungen"_s;
}

template<typename T>
QByteArray bytes(const T &objektOderListe)
{
    return QJsonDocument(objektOderListe).toJson(QJsonDocument::Compact);
}

QJsonObject json(const Statistik &statistik)
{
    QJsonObject objekt{{u"stand"_s, statistik.stand}};
    for (const auto &[name, zahl] : statistikzahlen) {
        objekt.insert(name, statistik.*zahl);
    }
    return objekt;
}

QJsonObject json(const QString &name, Lage lage)
{
    return {{u"name"_s, name}, {u"rekordbox_offen"_s, lage.offen}, {u"laeuft"_s, lage.laeuft}};
}

// The list "andere" for `geraet`: the clock's devices, then the account's further devices.
QJsonArray andere(const Umstaende &umstaende, const Geraet &geraet)
{
    QJsonArray liste;
    for (const AnderesGeraet &anderes : umstaende.welt.andere) {
        liste.append(json(anderes.name, lage(anderes, umstaende.welt.alter(umstaende.jetzt))));
    }
    for (const Geraet &weiteres : umstaende.welt.geraete) {
        if (weiteres.name != geraet.name) {
            const bool laeuft = umstaende.laufende.contains(weiteres.name);
            liste.append(json(weiteres.name, {.laeuft = laeuft}));
        }
    }
    return liste;
}

Antwort status(const Umstaende &umstaende)
{
    return {.inhalt = bytes(QJsonObject{{u"zustand"_s, u"bereit"_s},
                                        {u"betrieb"_s, name(umstaende.welt.betrieb)},
                                        {u"zeit"_s, zeitpunkt(umstaende.jetzt)}})};
}

Antwort stand(const Umstaende &umstaende, const Anfrage &anfrage)
{
    const QString gefragt = anfrage.parameter(u"geraet"_s);
    if (gefragt.isEmpty()) {
        return fehlerAntwort(400, u"In der Anfrage fehlt der Parameter „geraet“."_s);
    }
    const Geraet *const geraet = finde(umstaende.welt, gefragt);
    if (geraet == nullptr) {
        return unbekanntesGeraet(gefragt);
    }
    return {.inhalt = bytes(QJsonObject{{u"geraet"_s, geraet->name},
                                        {u"betrieb"_s, name(umstaende.welt.betrieb)},
                                        {u"ausstehend"_s, wartetEtwas(geraet->fuerGeraet)},
                                        {u"stand"_s, umstaende.welt.statistik.stand},
                                        {u"andere"_s, andere(umstaende, *geraet)}})};
}

Antwort playlisten(const Umstaende &umstaende, const Anfrage &anfrage)
{
    const QString gefragt = anfrage.parameter(u"geraet"_s);
    const QString gemeint = gefragt.isEmpty() ? umstaende.welt.geraete.value(0).name : gefragt;
    const Geraet *const geraet = finde(umstaende.welt, gemeint);
    if (geraet == nullptr) {
        return unbekanntesGeraet(gemeint);
    }
    // The list can be large and is kept serialised.
    const QByteArray lokal = bytes(QJsonArray::fromStringList(geraet->lokal));
    return {.inhalt = "{\"lokal\":" + lokal + ",\"playlisten\":" + umstaende.welt.playlisten + '}'};
}

Antwort einstellungen(const Umstaende &umstaende, const Anfrage &anfrage)
{
    const auto inhalt = objektAus(anfrage.inhalt, {u"geraet"_s});
    if (!inhalt) {
        return inhalt.error();
    }
    const QJsonValue lokal = inhalt->value(u"lokal"_s);
    const QJsonArray uuids = lokal.toArray();
    const bool texte = std::all_of(uuids.begin(), uuids.end(),
                                   [](const QJsonValue &uuid) { return uuid.isString(); });
    if (!lokal.isArray() || !texte) {
        return fehlerAntwort(400, u"In der Anfrage fehlt die Liste „lokal“ von Texten."_s);
    }
    const QString gefragt = inhalt->value(u"geraet"_s).toString();
    Geraet *const geraet = finde(umstaende.welt, gefragt);
    if (geraet == nullptr) {
        return unbekanntesGeraet(gefragt);
    }
    geraet->lokal = lokal.toVariant().toStringList();
    geraet->lokal.removeDuplicates();
    return {.inhalt = bytes(QJsonObject{{u"geraet"_s, geraet->name},
                                        {u"lokal"_s, QJsonArray::fromStringList(geraet->lokal)}})};
}

} // namespace

QStringList wege()
{
    return {u"/api/status"_s, u"/api/abgleich"_s, u"/api/stand"_s, u"/api/playlisten"_s,
            u"/api/einstellungen"_s};
}

Antwort fehlerAntwort(int status, const QString &text)
{
    return {.status = status, .inhalt = bytes(QJsonObject{{u"fehler"_s, text}})};
}

Antwort unbekanntesGeraet(const QString &name)
{
    return fehlerAntwort(404, u"Die Cloud kennt kein Gerät „%1“."_s.arg(name));
}

std::optional<Antwort> ablehnung(const Anfrage &anfrage, const QByteArray &schluessel)
{
    if (!wege().contains(anfrage.pfad)) {
        return fehlerAntwort(404, u"Diese Adresse gibt es in der Cloud nicht."_s);
    }
    const QByteArrayList erlaubt =
        schreibend(anfrage.pfad) ? QByteArrayList{"POST"} : QByteArrayList{"GET", "HEAD"};
    if (!erlaubt.contains(anfrage.methode)) {
        Antwort antwort = fehlerAntwort(405, u"Die Methode „%1“ ist hier nicht erlaubt."_s.arg(
                                                 QString::fromUtf8(anfrage.methode)));
        antwort.erlaubt = erlaubt.join(", ");
        return antwort;
    }
    const QByteArray genannt = anfrage.kopfzeile("X-Schluessel");
    if (genannt != schluessel) {
        return fehlerAntwort(401, genannt.isEmpty() ? u"Der Schlüssel fehlt."_s
                                                    : u"Der Schlüssel stimmt nicht."_s);
    }
    return std::nullopt;
}

tl::expected<QJsonObject, Antwort> objektAus(const QByteArray &inhalt, const QStringList &texte)
{
    QJsonParseError syntax;
    const QJsonDocument dokument = QJsonDocument::fromJson(inhalt, &syntax);
    const auto schlecht = [](const QString &grund) {
        return tl::unexpected(fehlerAntwort(400, grund));
    };
    if (syntax.error != QJsonParseError::NoError) {
        return schlecht(u"Der Inhalt der Anfrage ist kein gültiges JSON."_s);
    }
    if (!dokument.isObject()) {
        return schlecht(u"Der Inhalt der Anfrage ist kein JSON-Objekt."_s);
    }
    for (const QString &schluessel : texte) {
        if (!dokument[schluessel].isString()) {
            return schlecht(u"In der Anfrage fehlt der Text „%1“."_s.arg(schluessel));
        }
    }
    return dokument.object();
}

Antwort abgleichAntwort(const Umstaende &umstaende, const Geraet &geraet, const Abgleich &abgleich)
{
    const Welt &welt = umstaende.welt;
    // A forced dry run counts as one, whatever the world's mode.
    const bool schatten = abgleich.ergebnis[u"zustand"_s].toString().startsWith(u"schatten"_s);
    QJsonObject objekt{{u"betrieb"_s, name(schatten ? Betrieb::Schatten : welt.betrieb)},
                       {u"geraet"_s, abgleich.geraet},
                       {u"andere"_s, andere(umstaende, geraet)},
                       {u"statistik"_s, json(welt.statistik)}};
    if (!abgleich.ergebnis.isEmpty()) {
        objekt.insert(u"ergebnis"_s, abgleich.ergebnis);
    }
    if (!welt.appVersion.isEmpty()) {
        objekt.insert(u"app"_s,
                      QJsonObject{{u"version"_s, welt.appVersion}, {u"url"_s, welt.appUrl}});
    }
    return {.inhalt = bytes(objekt)};
}

Antwort antwort(const Umstaende &umstaende, const Anfrage &anfrage)
{
    return anfrage.pfad == u"/api/status"_s       ? status(umstaende)
           : anfrage.pfad == u"/api/stand"_s      ? stand(umstaende, anfrage)
           : anfrage.pfad == u"/api/playlisten"_s ? playlisten(umstaende, anfrage)
                                                  : einstellungen(umstaende, anfrage);
}

} // namespace kalvaro::democloud
