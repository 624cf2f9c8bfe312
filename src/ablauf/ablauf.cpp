#include "ablauf/ablauf.h"

namespace kalvaro {

Ablauf::Ablauf(const Konto &konto, const Umgebung &grundlage)
    : umgebung(grundlage)
    , zentrale(konto, umgebung.transport)
    , abgleicher(zentrale, umgebung.rekordbox)
    , starter(zentrale, abgleicher, einst, umgebung.rekordbox, umgebung.arbeitsplatz)
    , wache(umgebung.uhr, umgebung.prozesse, umgebung.rekordbox)
{
}

bool Ablauf::abgleichMoeglich()
{
    if (starter.schritt() == Startschritt::Startet) {
        abgleicher.schulden();
        return false;
    }
    return abgleicher.moeglich();
}

} // namespace kalvaro
