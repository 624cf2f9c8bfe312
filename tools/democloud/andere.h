#pragma once

#include "welt.h"

#include <QJsonArray>
#include <QSet>

// The other devices of the account, as a deterministic function of the time.

struct Lage
{
    bool offen = false;  // rekordbox is open there
    bool laeuft = false; // it is transferring

    bool operator==(const Lage &) const = default;
};

// `sekunden` since the world's beginning; before it a device is closed.
[[nodiscard]] Lage lage(const AnderesGeraet &geraet, double sekunden);

// Transfers that have ended by then.
[[nodiscard]] qint64 ankuenfte(const AnderesGeraet &geraet, double sekunden);

// Brings everything that arrived from other devices until `jetzt` into the central library and
// into each device's pending changes. A clock that went backwards changes nothing.
void fortschreiben(Welt &welt, const QDateTime &jetzt);

// The list "andere" for `geraet`: the clock's devices, then the account's further devices, of which
// those in `laufende` are transferring.
[[nodiscard]] QJsonArray andereGeraete(const Welt &welt, const QString &geraet,
                                       const QDateTime &jetzt, const QSet<QString> &laufende);
