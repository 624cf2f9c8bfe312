#include "welt.h"

#include <QtNumeric>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 bytesJeTitel = 9'800'000;
constexpr qint64 analysebytesJeTitel = 410'000;

// wert + neu * faktor, at most the largest number.
void dazu(qint64 &wert, qint64 neu, qint64 faktor)
{
    qint64 produkt = 0;
    if (qMulOverflow(neu, faktor, &produkt) || qAddOverflow(wert, produkt, &wert)) {
        wert = std::numeric_limits<qint64>::max();
    }
}

} // namespace

void dazu(Aenderungen &ziel, const Aenderungen &neu, qint64 faktor)
{
    for (auto it = neu.cbegin(); it != neu.cend(); ++it) {
        dazu(ziel[it.key()], it.value(), faktor);
    }
}

bool wartetEtwas(const Aenderungen &aenderungen)
{
    return std::any_of(aenderungen.begin(), aenderungen.end(),
                       [](qint64 anzahl) { return anzahl != 0; });
}

QString name(Betrieb betrieb)
{
    return betrieb == Betrieb::Schatten ? u"schatten"_s : u"scharf"_s;
}

std::optional<Betrieb> betriebAus(const QString &text)
{
    for (const Betrieb betrieb : {Betrieb::Schatten, Betrieb::Scharf}) {
        if (text == name(betrieb)) {
            return betrieb;
        }
    }
    return std::nullopt;
}

void mitzaehlen(Statistik &statistik, const Aenderungen &neu, qint64 faktor)
{
    qint64 titel = 0;
    dazu(titel, neu.value(u"djmdContent"_s), faktor);
    dazu(statistik.titel, titel, 1);
    dazu(statistik.analysiert, titel, 1);
    dazu(statistik.dateigroesse, titel, bytesJeTitel);
    dazu(statistik.analysegroesse, titel, analysebytesJeTitel);
    dazu(statistik.playlisten, neu.value(u"djmdPlaylist"_s), faktor);
    dazu(statistik.hotCues, neu.value(u"djmdCue"_s), faktor);
}

QString zeitpunkt(const QDateTime &zeit)
{
    return zeit.toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

Lage lage(const AnderesGeraet &geraet, double sekunden)
{
    if (sekunden < 0) {
        return {};
    }
    const double stelle = std::fmod(sekunden, geraet.periode);
    const double zu = geraet.offenAb + geraet.offenDauer;
    return {.offen = stelle >= geraet.offenAb && stelle < zu,
            .laeuft = stelle >= zu && stelle < zu + geraet.laeuftDauer};
}

qint64 ankuenfte(const AnderesGeraet &geraet, double sekunden)
{
    const double erste = geraet.offenAb + geraet.offenDauer + geraet.laeuftDauer;
    if (geraet.bringt.isEmpty() || sekunden < erste) {
        return 0;
    }
    return static_cast<qint64>(std::floor((sekunden - erste) / geraet.periode)) + 1;
}

void fortschreiben(Welt &welt, const QDateTime &jetzt)
{
    for (AnderesGeraet &anderes : welt.andere) {
        const qint64 neu = ankuenfte(anderes, welt.alter(jetzt)) - anderes.verbucht;
        if (neu <= 0) {
            continue;
        }
        anderes.verbucht += neu;
        mitzaehlen(welt.statistik, anderes.bringt, neu);
        for (Geraet &geraet : welt.geraete) {
            dazu(geraet.fuerGeraet, anderes.bringt, neu);
        }
    }
}

Geraet *finde(Welt &welt, const QString &geraet)
{
    const auto treffer = std::find_if(welt.geraete.begin(), welt.geraete.end(),
                                      [&](const Geraet &g) { return g.name == geraet; });
    return treffer == welt.geraete.end() ? nullptr : &*treffer;
}

QString ladeadresse(const QString &version)
{
    return u"https://kalvaro.example/laden/kalvaro-"_s + version + u".dmg"_s;
}

} // namespace kalvaro::democloud
