#pragma once

#include <QString>
#include <QStringList>

namespace kalvaro {

// What the program asks of the process table.
class Prozesse
{
public:
    Prozesse() = default;
    Prozesse(const Prozesse &) = delete;
    Prozesse &operator=(const Prozesse &) = delete;
    virtual ~Prozesse() = default;

    // How many processes run whose name is exactly `name`; 0 when the system does not tell. May
    // block for some milliseconds, for 2 s at the very most.
    [[nodiscard]] virtual qsizetype anzahl(const QString &name) const = 0;

    // The absolute paths of the application bundles ("…/rekordbox.app") from which processes run,
    // without a trailing slash. Cheap enough to be asked every few seconds.
    [[nodiscard]] virtual QStringList buendel() const = 0;
};

} // namespace kalvaro
