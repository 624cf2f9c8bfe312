#include "szenario.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array liste{
    Szenarioeintrag{Szenario::Keins, u"keins", u"die Welt entscheidet (Vorgabe)"},
    Szenarioeintrag{Szenario::Aktuell, u"aktuell", u"nichts zu übertragen"},
    Szenarioeintrag{Szenario::Abgeglichen, u"abgeglichen", u"Änderungen in beide Richtungen"},
    Szenarioeintrag{Szenario::AbgeglichenLeer, u"abgeglichen_leer",
                    u"abgeglichen, ohne eine Änderung"},
    Szenarioeintrag{Szenario::AbgeglichenKlein, u"abgeglichen_klein",
                    u"abgeglichen, nur Cues, Verlauf und Analysen"},
    Szenarioeintrag{Szenario::Schatten, u"schatten", u"Probebetrieb mit Unterschieden"},
    Szenarioeintrag{Szenario::SchattenGleich, u"schatten_gleich",
                    u"Probebetrieb ohne Unterschiede"},
    Szenarioeintrag{Szenario::SchattenKlein, u"schatten_klein",
                    u"Probebetrieb, nur kleinere Unterschiede"},
    Szenarioeintrag{Szenario::SchattenUnveraendert, u"schatten_unveraendert",
                    u"wie beim letzten Vergleich, mit Unterschieden"},
    Szenarioeintrag{Szenario::SchattenUnveraendertGleich, u"schatten_unveraendert_gleich",
                    u"wie beim letzten Vergleich, ohne Unterschiede"},
    Szenarioeintrag{Szenario::SchattenUnveraendertOhne, u"schatten_unveraendert_ohne",
                    u"ohne Ergebnis eines letzten Vergleichs"},
    Szenarioeintrag{Szenario::RekordboxOffen, u"rekordbox_offen",
                    u"rekordbox läuft auf diesem Mac"},
    Szenarioeintrag{Szenario::Verschoben, u"verschoben", u"verschoben, mit Hinweis"},
    Szenarioeintrag{Szenario::VerschobenOhneHinweis, u"verschoben_ohne_hinweis",
                    u"verschoben, ohne Hinweis"},
    Szenarioeintrag{Szenario::LaeuftSchon, u"laeuft_schon", u"ein anderer Abgleich läuft noch"},
    Szenarioeintrag{Szenario::Angehalten, u"angehalten", u"zur Sicherheit angehalten"},
    Szenarioeintrag{Szenario::Fehler, u"fehler", u"der Abgleich ist gestört"},
    Szenarioeintrag{Szenario::NichtErreichbar, u"nicht_erreichbar",
                    u"die Cloud erreicht diesen Mac nicht"},
    Szenarioeintrag{Szenario::Unbekannt, u"unbekannt", u"ein Zustand, den niemand kennt"},
    Szenarioeintrag{Szenario::Leer, u"leer", u"eine Antwort ohne jedes Ergebnis"},
    Szenarioeintrag{Szenario::Serverfehler, u"serverfehler",
                    u"HTTP 500 mit Fehlertext auf alles außer /api/status"},
    Szenarioeintrag{Szenario::ServerfehlerOhneText, u"serverfehler_ohne_text",
                    u"HTTP 500 ohne Inhalt auf alles außer /api/status"},
    Szenarioeintrag{Szenario::Stumm, u"stumm", u"keine Antwort auf alles außer /api/status"},
};

} // namespace

std::span<const Szenarioeintrag> szenarien()
{
    return liste;
}

std::optional<Szenario> szenarioAus(const QString &name)
{
    const auto *const treffer = std::find_if(
        liste.begin(), liste.end(), [&](const Szenarioeintrag &e) { return e.name == name; });
    return treffer == liste.end() ? std::nullopt : std::optional(treffer->szenario);
}
