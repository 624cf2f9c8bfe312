#include "beispielwelt.h"

#include "weltdatei.h"

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 letzterAbgleichVorSekunden = 1800;

constexpr const char *beispiel = R"({
    "playlisten": 184,
    "statistik": {"titel": 12483, "hot_cues": 38112, "dateigroesse": 123456000000,
                  "analysiert": 12310, "analysegroesse": 5210000000},
    "geraete": [{
        "name": "demo-mac",
        "aendert_geraet": {"djmdContent": 24, "djmdCue": 61, "djmdPlaylist": 2},
        "aendert_zentrale": {"djmdContent": 3, "djmdCue": 11, "djmdPlaylist": 1},
        "lokal": ["1087ebe8-1ef8-5d97-8873-735b4949004d", "f797f61e-a392-5acf-af25-b46057f1c8e8"]
    }],
    "andere": [
        {"name": "Studio", "periode": 300, "offen_ab": 60, "offen_dauer": 90, "laeuft_dauer": 20,
         "bringt": {"djmdContent": 5, "djmdCue": 8, "djmdPlaylist": 1}},
        {"name": "MacBook auf Tour", "periode": 900, "offen_ab": 420, "offen_dauer": 180,
         "laeuft_dauer": 30, "bringt": {"djmdCue": 12, "djmdHistory": 1}}
    ],
    "nachher": {"djmdContent": 2, "djmdCue": 6, "djmdHistory": 1}
})";

} // namespace

Welt beispielwelt(const QDateTime &jetzt)
{
    Welt welt = weltAusJson(beispiel, u"Beispiel"_s).value();
    welt.statistik.stand = zeitpunkt(jetzt.addSecs(-letzterAbgleichVorSekunden));
    return welt;
}

} // namespace kalvaro::democloud
