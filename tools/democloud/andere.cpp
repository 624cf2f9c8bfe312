#include "andere.h"

#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

double sekundenSeit(const Welt &welt, const QDateTime &jetzt)
{
    return static_cast<double>(welt.beginn.msecsTo(jetzt)) / 1000.0;
}

QJsonObject eintrag(const QString &name, Lage lage)
{
    return {{u"name"_s, name}, {u"rekordbox_offen"_s, lage.offen}, {u"laeuft"_s, lage.laeuft}};
}

} // namespace

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
    const double sekunden = sekundenSeit(welt, jetzt);
    for (AnderesGeraet &anderes : welt.andere) {
        const qint64 neu = ankuenfte(anderes, sekunden) - anderes.verbucht;
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

QJsonArray andereGeraete(const Welt &welt, const QString &geraet, const QDateTime &jetzt,
                         const QSet<QString> &laufende)
{
    QJsonArray liste;
    const double sekunden = sekundenSeit(welt, jetzt);
    for (const AnderesGeraet &anderes : welt.andere) {
        liste.append(eintrag(anderes.name, lage(anderes, sekunden)));
    }
    for (const Geraet &weiteres : welt.geraete) {
        if (weiteres.name != geraet) {
            liste.append(eintrag(weiteres.name, {.laeuft = laufende.contains(weiteres.name)}));
        }
    }
    return liste;
}
