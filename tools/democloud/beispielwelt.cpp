#include "beispielwelt.h"

#include "bibliothek.h"

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 playlisten = 184;
constexpr qint64 letzterAbgleichVorSekunden = 1800;

QList<AnderesGeraet> andere()
{
    return {{.name = u"Studio"_s,
             .periode = 300,
             .offenAb = 60,
             .offenDauer = 90,
             .laeuftDauer = 20,
             .bringt = {{u"djmdContent"_s, 5}, {u"djmdCue"_s, 8}, {u"djmdPlaylist"_s, 1}}},
            {.name = u"MacBook auf Tour"_s,
             .periode = 900,
             .offenAb = 420,
             .offenDauer = 180,
             .laeuftDauer = 30,
             .bringt = {{u"djmdCue"_s, 12}, {u"djmdHistory"_s, 1}}}};
}

} // namespace

Welt beispielwelt(const QDateTime &jetzt)
{
    const Unterschiede wartende = beispielunterschiede(Beispiel::Gross);
    Welt welt;
    welt.statistik = {.titel = 12'483,
                      .hotCues = 38'112,
                      .dateigroesse = 123'456'000'000,
                      .analysiert = 12'310,
                      .analysegroesse = 5'210'000'000,
                      .stand = zeitpunkt(jetzt.addSecs(-letzterAbgleichVorSekunden))};
    welt.geraete = {{.name = u"demo-mac"_s,
                     .fuerGeraet = wartende.geraet,
                     .fuerZentrale = wartende.zentrale,
                     .lokal = {playlistUuid(1), playlistUuid(4)}}};
    welt.andere = andere();
    welt.nachRekordbox = {{u"djmdContent"_s, 2}, {u"djmdCue"_s, 6}, {u"djmdHistory"_s, 1}};
    playlistenErzeugen(welt, playlisten);
    return welt;
}

Unterschiede beispielunterschiede(Beispiel beispiel)
{
    switch (beispiel) {
    case Beispiel::Nichts:
        break;
    case Beispiel::Klein:
        return {.zentrale = {{u"djmdCue"_s, 11}, {u"djmdHistory"_s, 1}},
                .geraet = {{u"djmdCue"_s, 4}, {u"contentFile"_s, 7}}};
    case Beispiel::Gross:
        return {.zentrale = {{u"djmdContent"_s, 3}, {u"djmdCue"_s, 11}, {u"djmdPlaylist"_s, 1}},
                .geraet = {{u"djmdContent"_s, 24}, {u"djmdCue"_s, 61}, {u"djmdPlaylist"_s, 2}}};
    }
    return {};
}

void playlistenErzeugen(Welt &welt, qint64 anzahl)
{
    welt.playlisten = bibliothek(anzahl);
    welt.statistik.playlisten = anzahl;
}

} // namespace kalvaro::democloud
