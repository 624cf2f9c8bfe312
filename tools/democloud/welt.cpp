#include "welt.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 bytesJeTitel = 9'800'000;
constexpr qint64 analysebytesJeTitel = 410'000;

qint64 produkt(qint64 a, qint64 b)
{
    qint64 ergebnis = 0;
    return __builtin_mul_overflow(a, b, &ergebnis) ? std::numeric_limits<qint64>::max() : ergebnis;
}

qint64 summe(qint64 a, qint64 b)
{
    qint64 ergebnis = 0;
    return __builtin_add_overflow(a, b, &ergebnis) ? std::numeric_limits<qint64>::max() : ergebnis;
}

} // namespace

qint64 anzahl(const Aenderungen &aenderungen)
{
    qint64 alle = 0;
    for (const qint64 wert : aenderungen) {
        alle = summe(alle, wert);
    }
    return alle;
}

void dazu(Aenderungen &ziel, const Aenderungen &neu, qint64 faktor)
{
    for (auto it = neu.cbegin(); it != neu.cend(); ++it) {
        qint64 &wert = ziel[it.key()];
        wert = summe(wert, produkt(it.value(), faktor));
    }
}

QString name(Betrieb betrieb)
{
    switch (betrieb) {
    case Betrieb::Schatten:
        return u"schatten"_s;
    case Betrieb::Scharf:
        return u"scharf"_s;
    }
    return {};
}

std::optional<Betrieb> betriebAus(const QString &name)
{
    if (name == u"schatten"_s) {
        return Betrieb::Schatten;
    }
    if (name == u"scharf"_s) {
        return Betrieb::Scharf;
    }
    return std::nullopt;
}

void mitzaehlen(Statistik &statistik, const Aenderungen &neu, qint64 faktor)
{
    const auto zahl = [&](const QString &tabelle) { return produkt(neu.value(tabelle), faktor); };
    const qint64 titel = zahl(u"djmdContent"_s);
    statistik.titel = summe(statistik.titel, titel);
    statistik.analysiert = summe(statistik.analysiert, titel);
    statistik.dateigroesse = summe(statistik.dateigroesse, produkt(titel, bytesJeTitel));
    statistik.analysegroesse = summe(statistik.analysegroesse, produkt(titel, analysebytesJeTitel));
    statistik.playlisten = summe(statistik.playlisten, zahl(u"djmdPlaylist"_s));
    statistik.hotCues = summe(statistik.hotCues, zahl(u"djmdCue"_s));
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
