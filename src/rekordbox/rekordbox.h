#pragma once

#include "platform/prozesse.h"
#include "rekordbox/installation.h"

#include <QList>

#include <optional>

namespace kalvaro {

class Einstellungen;

// What the program asks of the rekordbox that lies on this machine. Keeps no state: every answer
// is fresh.
class Rekordbox
{
public:
    // `programmordner` is the folder of applications, usually "/Applications". `prozesse` must
    // outlive this object.
    Rekordbox(const Prozesse &prozesse, QString programmordner);

    // All installed copies, newest first; equal versions in the order of the folder's listing.
    // Empty when the folder cannot be read.
    [[nodiscard]] QList<Installation> installationen() const;

    // The copy to start: the version that the user chose, else the first of `liste`; absent when
    // `liste` is empty.
    [[nodiscard]] static std::optional<Installation> gewaehlt(const QList<Installation> &liste,
                                                              const Einstellungen &einst);

    // How many processes run whose name is exactly `name`. May block (see Prozesse), and so may
    // the two below.
    [[nodiscard]] qsizetype anzahl(const QString &name) const;

    // The application itself runs.
    [[nodiscard]] bool hauptLaeuft() const;

    // The application or the agent that it leaves behind runs: no sync may start.
    [[nodiscard]] bool laeuft() const;

private:
    const Prozesse &prozesse_;
    const QString programmordner_;
};

} // namespace kalvaro
