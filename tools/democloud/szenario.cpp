#include "szenario.h"

#include <algorithm>
#include <array>

namespace kalvaro::democloud {

namespace {

using enum Szenario;
using enum Beispiel;

constexpr auto liste = std::to_array<Szenarioeintrag>({
    {Keins, u"keins", u"die Welt entscheidet (Vorgabe)"},
    {Aktuell, u"aktuell", u"nichts zu übertragen", u"aktuell"},
    {Abgeglichen, u"abgeglichen", u"Änderungen in beide Richtungen", u"abgeglichen", Gross},
    {AbgeglichenLeer, u"abgeglichen_leer", u"abgeglichen, ohne eine Änderung", u"abgeglichen"},
    {AbgeglichenKlein, u"abgeglichen_klein", u"abgeglichen, nur Cues, Verlauf und Analysen",
     u"abgeglichen", Klein},
    {Schatten, u"schatten", u"Probebetrieb mit Unterschieden", u"schatten", Gross},
    {SchattenGleich, u"schatten_gleich", u"Probebetrieb ohne Unterschiede", u"schatten"},
    {SchattenKlein, u"schatten_klein", u"Probebetrieb, nur kleinere Unterschiede", u"schatten",
     Klein},
    {SchattenUnveraendert, u"schatten_unveraendert",
     u"wie beim letzten Vergleich, mit Unterschieden", u"schatten_unveraendert", Nichts, Gross},
    {SchattenUnveraendertGleich, u"schatten_unveraendert_gleich",
     u"wie beim letzten Vergleich, ohne Unterschiede", u"schatten_unveraendert", Nichts, Nichts},
    {SchattenUnveraendertOhne, u"schatten_unveraendert_ohne",
     u"ohne Ergebnis eines letzten Vergleichs", u"schatten_unveraendert"},
    {RekordboxOffen, u"rekordbox_offen", u"rekordbox läuft auf diesem Mac", u"rekordbox_offen"},
    {Verschoben, u"verschoben", u"verschoben, mit Hinweis", u"verschoben"},
    {VerschobenOhneHinweis, u"verschoben_ohne_hinweis", u"verschoben, ohne Hinweis", u"verschoben"},
    {LaeuftSchon, u"laeuft_schon", u"ein anderer Abgleich läuft noch", u"laeuft_schon"},
    {Angehalten, u"angehalten", u"zur Sicherheit angehalten", u"angehalten"},
    {Fehler, u"fehler", u"der Abgleich ist gestört", u"fehler"},
    {NichtErreichbar, u"nicht_erreichbar", u"die Cloud erreicht diesen Mac nicht",
     u"nicht_erreichbar"},
    {Unbekannt, u"unbekannt", u"ein Zustand, den niemand kennt", u"wartung_stufe_2"},
    {Leer, u"leer", u"eine Antwort ohne jedes Ergebnis"},
    {Serverfehler, u"serverfehler", u"HTTP 500 mit Fehlertext auf alles außer /api/status"},
    {ServerfehlerOhneText, u"serverfehler_ohne_text",
     u"HTTP 500 ohne Inhalt auf alles außer /api/status"},
    {Stumm, u"stumm", u"keine Antwort auf alles außer /api/status"},
});

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

} // namespace kalvaro::democloud
