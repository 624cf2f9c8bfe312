#include "abgleich.h"

namespace kalvaro::democloud {

using namespace Qt::StringLiterals;

namespace {

QJsonObject json(const Aenderungen &aenderungen)
{
    QJsonObject objekt;
    for (auto it = aenderungen.cbegin(); it != aenderungen.cend(); ++it) {
        objekt.insert(it.key(), it.value());
    }
    return objekt;
}

QJsonObject json(const Unterschiede &unterschiede)
{
    return {{u"aendert_zentrale"_s, json(unterschiede.zentrale)},
            {u"aendert_geraet"_s, json(unterschiede.geraet)}};
}

Unterschiede unterschiede(Beispiel beispiel)
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

Abgleich vergleichen(Geraet &geraet, const Unterschiede &gefunden)
{
    if (geraet.letzterVergleich != gefunden) {
        geraet.letzterVergleich = gefunden;
        return abgleichMit(geraet, u"schatten"_s, gefunden);
    }
    Abgleich abgleich = abgleichMit(geraet, u"schatten_unveraendert"_s);
    abgleich.geraet.insert(u"schatten_ergebnis"_s, json(gefunden));
    return abgleich;
}

} // namespace

Abgleich abgleichMit(const Geraet &geraet, const QString &zustand, const Unterschiede &aenderungen)
{
    Abgleich abgleich{.ergebnis = json(aenderungen),
                      .geraet = {{u"name"_s, geraet.name}, {u"zustand"_s, geraet.zustand}}};
    abgleich.ergebnis.insert(u"zustand"_s, zustand);
    return abgleich;
}

Abgleich vollziehen(Welt &welt, Geraet &geraet, const QString &anlass, const QDateTime &jetzt)
{
    if (anlass == u"nachher"_s) {
        dazu(geraet.fuerZentrale, welt.nachRekordbox);
    }
    const Unterschiede gefunden{.zentrale = geraet.fuerZentrale, .geraet = geraet.fuerGeraet};
    if (welt.betrieb == Betrieb::Schatten) {
        return vergleichen(geraet, gefunden);
    }
    mitzaehlen(welt.statistik, gefunden.zentrale);
    welt.statistik.stand = zeitpunkt(jetzt);
    for (Geraet &weiteres : welt.geraete) {
        if (&weiteres != &geraet) {
            dazu(weiteres.fuerGeraet, gefunden.zentrale);
        }
    }
    geraet.fuerZentrale.clear();
    geraet.fuerGeraet.clear();
    geraet.letzterVergleich.reset();
    const bool etwas = wartetEtwas(gefunden.zentrale) || wartetEtwas(gefunden.geraet);
    return abgleichMit(geraet, etwas ? u"abgeglichen"_s : u"aktuell"_s, gefunden);
}

Abgleich erzwungen(Szenario szenario, const Welt &welt, const Geraet &geraet)
{
    const Szenarioeintrag &eintrag = szenarien()[static_cast<std::size_t>(szenario)];
    Abgleich abgleich =
        abgleichMit(geraet, eintrag.zustand.toString(), unterschiede(eintrag.aenderungen));
    if (eintrag.vergleich) {
        abgleich.geraet.insert(u"schatten_ergebnis"_s, json(unterschiede(*eintrag.vergleich)));
    }
    if (szenario == Szenario::Verschoben) {
        abgleich.ergebnis.insert(u"hinweis"_s, u"die Musikplatte wird gerade gesichert"_s);
    } else if (szenario == Szenario::Fehler) {
        abgleich.ergebnis.insert(u"fehler"_s, u"Die Musikplatte der Cloud antwortet nicht."_s);
    } else if (szenario == Szenario::Angehalten) {
        abgleich.geraet.insert(
            u"zustand"_s,
            u"angehalten: 4127 von %1 Titeln wären gelöscht worden"_s.arg(welt.statistik.titel));
    } else if (szenario == Szenario::Leer) {
        abgleich.ergebnis = {};
    }
    return abgleich;
}

} // namespace kalvaro::democloud
