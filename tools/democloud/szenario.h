#pragma once

#include <QString>

#include <optional>
#include <span>

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

struct Szenarioeintrag
{
    Szenario szenario;
    QStringView name;         // as given to --szenario
    QStringView beschreibung; // one German line for --help
};

// All scenarios in the order of the enumeration.
[[nodiscard]] std::span<const Szenarioeintrag> szenarien();
[[nodiscard]] std::optional<Szenario> szenarioAus(const QString &name);
