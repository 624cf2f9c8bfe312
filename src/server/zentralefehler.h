#pragma once

#include <QString>

namespace kalvaro {

// Why a request came to nothing, with the German sentence to show.
struct ZentraleFehler
{
    bool offline = false;            // no server could be reached; false: one answered, but not 200
    bool zeitUeberschritten = false; // the request itself (no status check) timed out
    QString meldung;
    QString rat{}; // the end of `meldung` that says what helps; usually empty

    bool operator==(const ZentraleFehler &) const = default;
};

} // namespace kalvaro
