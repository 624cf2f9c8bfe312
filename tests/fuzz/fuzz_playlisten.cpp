// The tree of playlists in the settings window.

#include "fuzz/muss.h"
#include "settingswindow/baumleser.h"
#include "settingswindow/knoten.h"

#include <algorithm>

using namespace kalvaro;

int LLVMFuzzerTestOneInput(const std::uint8_t *daten, std::size_t anzahl)
{
    Knotenliste alle = baumAus(json(bytes(daten, anzahl)));
    const auto gelesen = baumLesen(bytes(daten, anzahl), [] { return false; });
    muss(gelesen && *gelesen == alle, "read straight from the bytes it is the same");
    const int groesse = static_cast<int>(alle.size());
    for (int i = 0; i < groesse; ++i) {
        const Knoten k = alle[static_cast<std::size_t>(i)];
        muss(k.ende > i && k.ende <= groesse, "what a folder holds lies in the list");
        muss(k.eltern < i && k.eltern >= -1, "a folder stands before what it holds");
        if (k.eltern >= 0) {
            const Knoten eltern = alle[static_cast<std::size_t>(k.eltern)];
            muss(eltern.ordner && k.ende <= eltern.ende, "it lies in its folder");
        }
    }
    for (int i = 0; i < groesse; ++i) {
        hakenSetzen(alle, i, i % 3 != 0);
        for (int j = i; j < alle[static_cast<std::size_t>(i)].ende; ++j) {
            muss(alle[static_cast<std::size_t>(j)].haken == (i % 3 != 0),
                 "a folder takes all along");
        }
    }
    const QJsonArray gewaehlt = json(auswahl(alle)).toArray();
    const std::vector<bool> menge = gewaehlte(alle);
    muss(std::count(menge.begin(), menge.end(), true) == gewaehlt.size(), "each is named once");
    muss(!zusammenfassung(alle, QString()).isEmpty(), "the choice is summed up");
    return 0;
}
