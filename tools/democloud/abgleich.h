#pragma once

#include "szenario.h"
#include "welt.h"

#include <QJsonObject>

namespace kalvaro::democloud {

// What a sync came to, as it is served.
struct Abgleich
{
    QJsonObject ergebnis; // empty: the answer carries none
    QJsonObject geraet;
};

// The sync came to `zustand` ("aktuell", "laeuft_schon", …) with these changes.
[[nodiscard]] Abgleich abgleichMit(const Geraet &geraet, const QString &zustand,
                                   const Unterschiede &aenderungen = {});

// Carries the sync of `geraet` out: in "scharf" it moves the pending changes, counts them and
// stamps the library; in "schatten" it only compares. Changes are those up to the last call of
// fortschreiben().
[[nodiscard]] Abgleich vollziehen(Welt &welt, Geraet &geraet, const QString &anlass,
                                  const QDateTime &jetzt);

// What `szenario` makes of a sync; the world stays as it is.
[[nodiscard]] Abgleich erzwungen(Szenario szenario, const Welt &welt, const Geraet &geraet);

} // namespace kalvaro::democloud
