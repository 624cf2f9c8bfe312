#include "abgleich.h"

using namespace Qt::StringLiterals;

namespace {

const Unterschiede &beispiel()
{
    static const Unterschiede werte{
        .zentrale = {{u"djmdContent"_s, 3}, {u"djmdCue"_s, 11}, {u"djmdPlaylist"_s, 1}},
        .geraet = {{u"djmdContent"_s, 24}, {u"djmdCue"_s, 61}, {u"djmdPlaylist"_s, 2}}};
    return werte;
}

const Unterschiede &kleines()
{
    static const Unterschiede werte{.zentrale = {{u"djmdCue"_s, 11}, {u"djmdHistory"_s, 1}},
                                    .geraet = {{u"djmdCue"_s, 4}, {u"contentFile"_s, 7}}};
    return werte;
}

Abgleich anfang(const Welt &welt, const Geraet &geraet, const QString &zustand)
{
    Abgleich abgleich;
    abgleich.betrieb = welt.betrieb;
    abgleich.zustand = zustand;
    abgleich.geraetZustand = geraet.zustand;
    return abgleich;
}

Abgleich vergleichen(const Welt &welt, Geraet &geraet)
{
    const Unterschiede gefunden{.zentrale = geraet.fuerZentrale, .geraet = geraet.fuerGeraet};
    if (geraet.letzterVergleich == gefunden) {
        Abgleich abgleich = anfang(welt, geraet, u"schatten_unveraendert"_s);
        abgleich.letzterVergleich = gefunden;
        return abgleich;
    }
    geraet.letzterVergleich = gefunden;
    Abgleich abgleich = anfang(welt, geraet, u"schatten"_s);
    abgleich.aenderungen = gefunden;
    return abgleich;
}

void uebertragen(Welt &welt, Geraet &geraet)
{
    mitzaehlen(welt.statistik, geraet.fuerZentrale);
    for (Geraet &weiteres : welt.geraete) {
        if (&weiteres != &geraet) {
            dazu(weiteres.fuerGeraet, geraet.fuerZentrale);
        }
    }
    geraet.fuerZentrale.clear();
    geraet.fuerGeraet.clear();
    geraet.letzterVergleich.reset();
}

Abgleich mitAenderungen(Abgleich abgleich, const Unterschiede &aenderungen)
{
    abgleich.aenderungen = aenderungen;
    return abgleich;
}

Abgleich imProbebetrieb(Abgleich abgleich, const Unterschiede &aenderungen)
{
    abgleich.betrieb = Betrieb::Schatten;
    return mitAenderungen(std::move(abgleich), aenderungen);
}

Abgleich unveraendert(Abgleich abgleich, std::optional<Unterschiede> vergleich)
{
    abgleich.betrieb = Betrieb::Schatten;
    abgleich.letzterVergleich = std::move(vergleich);
    return abgleich;
}

Abgleich verschoben(Abgleich abgleich, const QString &hinweis)
{
    abgleich.hinweis = hinweis;
    return abgleich;
}

Abgleich angehalten(Abgleich abgleich, const Statistik &statistik)
{
    abgleich.geraetZustand =
        u"angehalten: 4127 von %1 Titeln wären gelöscht worden"_s.arg(statistik.titel);
    return abgleich;
}

Abgleich gestoert(Abgleich abgleich)
{
    abgleich.fehler = u"Die Musikplatte der Cloud antwortet nicht."_s;
    return abgleich;
}

} // namespace

Abgleich vollziehen(Welt &welt, Geraet &geraet, const QString &anlass, const QDateTime &jetzt)
{
    if (anlass == u"nachher"_s) {
        dazu(geraet.fuerZentrale, welt.nachRekordbox);
    }
    if (welt.betrieb == Betrieb::Schatten) {
        return vergleichen(welt, geraet);
    }
    Unterschiede uebertragene{.zentrale = geraet.fuerZentrale, .geraet = geraet.fuerGeraet};
    uebertragen(welt, geraet);
    welt.statistik.stand = jetzt.toString(u"yyyy-MM-dd HH:mm:ss"_s);
    const bool nichts = anzahl(uebertragene.zentrale) == 0 && anzahl(uebertragene.geraet) == 0;
    return mitAenderungen(anfang(welt, geraet, nichts ? u"aktuell"_s : u"abgeglichen"_s),
                          uebertragene);
}

Abgleich laeuftSchon(const Welt &welt, const Geraet &geraet)
{
    return anfang(welt, geraet, u"laeuft_schon"_s);
}

Abgleich erzwungen(Szenario szenario, const Welt &welt, const Geraet &geraet)
{
    const auto mit = [&](const QString &zustand) { return anfang(welt, geraet, zustand); };
    switch (szenario) {
    case Szenario::Aktuell:
        return mit(u"aktuell"_s);
    case Szenario::Abgeglichen:
        return mitAenderungen(mit(u"abgeglichen"_s), beispiel());
    case Szenario::AbgeglichenLeer:
        return mit(u"abgeglichen"_s);
    case Szenario::AbgeglichenKlein:
        return mitAenderungen(mit(u"abgeglichen"_s), kleines());
    case Szenario::Schatten:
        return imProbebetrieb(mit(u"schatten"_s), beispiel());
    case Szenario::SchattenGleich:
        return imProbebetrieb(mit(u"schatten"_s), {});
    case Szenario::SchattenKlein:
        return imProbebetrieb(mit(u"schatten"_s), kleines());
    case Szenario::SchattenUnveraendert:
        return unveraendert(mit(u"schatten_unveraendert"_s), beispiel());
    case Szenario::SchattenUnveraendertGleich:
        return unveraendert(mit(u"schatten_unveraendert"_s), Unterschiede{});
    case Szenario::SchattenUnveraendertOhne:
        return unveraendert(mit(u"schatten_unveraendert"_s), std::nullopt);
    case Szenario::RekordboxOffen:
        return mit(u"rekordbox_offen"_s);
    case Szenario::Verschoben:
        return verschoben(mit(u"verschoben"_s), u"die Musikplatte wird gerade gesichert"_s);
    case Szenario::VerschobenOhneHinweis:
        return mit(u"verschoben"_s);
    case Szenario::LaeuftSchon:
        return laeuftSchon(welt, geraet);
    case Szenario::Angehalten:
        return angehalten(mit(u"angehalten"_s), welt.statistik);
    case Szenario::Fehler:
        return gestoert(mit(u"fehler"_s));
    case Szenario::NichtErreichbar:
        return mit(u"nicht_erreichbar"_s);
    case Szenario::Unbekannt:
        return mit(u"wartung_stufe_2"_s);
    case Szenario::Keins:
    case Szenario::Leer:
    case Szenario::Serverfehler:
    case Szenario::ServerfehlerOhneText:
    case Szenario::Stumm:
        break;
    }
    return mit({});
}
