#pragma once

#include "welt.h"

// The world of a first start: changes wait in both directions, two other devices come and go, and
// each rekordbox session leaves something to save. Never synced before `jetzt` by half an hour.
[[nodiscard]] Welt beispielwelt(const QDateTime &jetzt);

// Replaces the library by a generated one of `anzahl` playlists.
void playlistenErzeugen(Welt &welt, qint64 anzahl);
