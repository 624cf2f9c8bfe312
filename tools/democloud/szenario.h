#pragma once

#include <QString>

#include <optional>
#include <span>

namespace kalvaro::democloud {

// A state that the cloud is forced into, whatever its world says. Keins: the world decides.
enum class Szenario {
    Keins,
    Aktuell,
    Abgeglichen,
    AbgeglichenLeer,
    AbgeglichenKlein,
    Schatten,
    SchattenGleich,
    SchattenKlein,
    SchattenUnveraendert,
    SchattenUnveraendertGleich,
    SchattenUnveraendertOhne,
    RekordboxOffen,
    Verschoben,
    VerschobenOhneHinweis,
    LaeuftSchon,
    Angehalten,
    Fehler,
    NichtErreichbar,
    Unbekannt,
    Leer,
    Serverfehler,
    ServerfehlerOhneText,
    Stumm,
};

// Which differences a forced state reports: none, tables that nobody counts by name, or tracks and
// playlists as well.
enum class Beispiel { Nichts, Klein, Gross };

struct Szenarioeintrag
{
    Szenario szenario;
    QStringView name;         // as given to --szenario
    QStringView beschreibung; // one German line for --help
    QStringView zustand = {}; // what a sync comes to; empty: it carries no result
    Beispiel aenderungen = Beispiel::Nichts;
    std::optional<Beispiel> vergleich = std::nullopt; // the last dry run; absent: none is reported
};

// All scenarios in the order of the enumeration.
[[nodiscard]] std::span<const Szenarioeintrag> szenarien();
[[nodiscard]] std::optional<Szenario> szenarioAus(const QString &name);

} // namespace kalvaro::democloud
