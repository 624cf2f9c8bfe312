#pragma once

#include "platform/einzelinstanz.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace kalvaro {

// What the command line asks for. Unknown arguments are ignored.
struct Kommandozeile
{
    bool hintergrund = false;      // "--hintergrund": live in the menu bar, open no window
    std::optional<QString> bild{}; // "--bild PFAD": picture mode
    bool abgleichen = false;       // "--abgleichen": a sync at once, by the program that runs
    bool beenden = false;          // "--beenden": the end of the program that runs
    bool dienst = false;           // "--dienst": started by the bus, which says next what for
    bool hilfe = false;            // "--help"
    bool version = false;          // "--version"

    bool operator==(const Kommandozeile &) const = default;

    // `argumente` without the program's own name. The first "--bild" counts, and the argument right
    // after it is the path; as the last argument it asks for nothing.
    [[nodiscard]] static Kommandozeile lesen(const QStringList &argumente);

    // What this start wants of a program that runs already; absent when nothing.
    [[nodiscard]] std::optional<Wunsch> wunsch() const;
};

// What "--help" prints.
[[nodiscard]] QString hilfetext();

} // namespace kalvaro
