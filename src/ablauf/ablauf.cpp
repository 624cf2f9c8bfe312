#include "ablauf/ablauf.h"

#include <utility>

namespace kalvaro {

Ablauf::Ablauf(const Konto &konto, const Umgebung &grundlage)
    : umgebung(grundlage)
    , zentrale(konto, umgebung.transport)
    , abgleicher(zentrale, umgebung.rekordbox)
    , starter(zentrale, abgleicher, einst, umgebung.rekordbox, umgebung.arbeitsplatz)
    , wache(umgebung.uhr, umgebung.prozesse, umgebung.rekordbox)
{
}

void Ablauf::abgleichMoeglich(QObject *besitzer, std::function<void(bool)> fertig)
{
    // What has been asked to start, before or during the question, may not be counted yet.
    const bool startet = starter.schritt() == Startschritt::Startet;
    abgleicher.moeglich(besitzer, [this, startet, starts = starter.starts(),
                                   fertig = std::move(fertig)](bool moeglich) {
        const bool ungezaehlt = startet || starts != starter.starts();
        if (ungezaehlt) {
            abgleicher.schulden();
        }
        fertig(moeglich && !ungezaehlt);
    });
}

} // namespace kalvaro
