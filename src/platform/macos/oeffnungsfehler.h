#pragma once

#include <QString>

namespace kalvaro {

// Why the system did not open an application: the innermost NSError that it told of.
struct Oeffnungsfehler
{
    QString bereich{}; // its domain
    qint64 nummer = 0;

    bool operator==(const Oeffnungsfehler &) const = default;
};

// The same as a German sentence that names the bundle `ort`: what the system itself says is in the
// language of the system.
[[nodiscard]] QString oeffnungsfehlertext(const Oeffnungsfehler &fehler, const QString &ort);

} // namespace kalvaro
