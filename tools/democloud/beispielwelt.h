#pragma once

#include "szenario.h"
#include "welt.h"

namespace kalvaro::democloud {

// The world of a first start: changes wait in both directions, two other devices come and go, and
// each rekordbox session leaves something to save. Last synced half an hour before `jetzt`.
[[nodiscard]] Welt beispielwelt(const QDateTime &jetzt);

[[nodiscard]] Unterschiede beispielunterschiede(Beispiel beispiel);

// Replaces the library by a generated one of `anzahl` playlists.
void playlistenErzeugen(Welt &welt, qint64 anzahl);

} // namespace kalvaro::democloud
