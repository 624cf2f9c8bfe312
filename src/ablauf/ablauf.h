#pragma once

#include "ablauf/abgleicher.h"
#include "ablauf/rekordboxstarter.h"
#include "ablauf/rekordboxwache.h"
#include "ablauf/umgebung.h"
#include "foundation/einstellungen.h"
#include "server/zentrale.h"

namespace kalvaro {

// What happens, without a face: one of each for the whole program. Window, menu and timers act on
// it and watch it; it knows none of them.
struct Ablauf
{
    Ablauf(const Konto &konto, const Umgebung &grundlage);

    // Asks whether a sync makes sense now: nothing of rekordbox runs or is about to. If not, one is
    // owed. `fertig` is called as Einmalruf states.
    void abgleichMoeglich(QObject *besitzer, std::function<void(bool)> fertig);

    const Umgebung umgebung;
    Zentrale zentrale;
    Einstellungen einst;
    Abgleicher abgleicher;
    Rekordboxstarter starter;
    Rekordboxwache wache;
};

} // namespace kalvaro
