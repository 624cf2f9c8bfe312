#pragma once

#include "szenario.h"
#include "welt.h"

// What a sync came to, before it becomes JSON.
struct Abgleich
{
    Betrieb betrieb = Betrieb::Scharf;
    QString zustand; // "abgeglichen", "aktuell", …; empty: the answer carries no result at all
    QString hinweis;
    QString fehler;
    QString geraetZustand;
    Unterschiede aenderungen;
    std::optional<Unterschiede> letzterVergleich; // served as "schatten_ergebnis"
};

// Carries the sync of `geraet` out: in "scharf" it moves the pending changes, counts them and
// stamps the library; in "schatten" it only compares. Changes are those up to the last call of
// fortschreiben().
[[nodiscard]] Abgleich vollziehen(Welt &welt, Geraet &geraet, const QString &anlass,
                                  const QDateTime &jetzt);

// The answer to a sync for a device whose sync is still under way.
[[nodiscard]] Abgleich laeuftSchon(const Welt &welt, const Geraet &geraet);

// The answer that `szenario` forces; the world stays as it is. Keins and the scenarios that answer
// with no sync at all (Serverfehler, …) give one without a result.
[[nodiscard]] Abgleich erzwungen(Szenario szenario, const Welt &welt, const Geraet &geraet);
