#pragma once

#include "platform/einzelinstanz.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace kalvaro {

// What the command line asks for.
struct Kommandozeile
{
    bool hintergrund = false;      // "--hintergrund": live in the menu bar, open no window
    std::optional<QString> bild{}; // "--bild PFAD": picture mode
    bool abgleichen = false;       // "--abgleichen": a sync at once, by the program that runs
    bool beenden = false;          // "--beenden": the end of the program that runs
    bool dienst = false;           // "--dienst": started by the bus, which says next what for
    bool bildOhnePfad = false;     // "--bild" as the last argument, which asks for nothing
    bool pruefen = false;          // "--pruefen": the check-up
    bool json = false;             // "--json": its findings for tools
    bool hilfe = false;            // "-h", "--help"
    bool version = false;          // "-v", "--version"
    QString plattform{};           // "-platform NAME", one of the toolkit's own; empty without
    QStringList unbekannt{};       // what nobody knows, in order; ignored

    bool operator==(const Kommandozeile &) const = default;

    // `argumente` without the program's own name. Each option is looked up anywhere, even where it
    // stands as a path. The first "--bild" counts, and the argument right after it is the path,
    // whatever it says; as the last argument it asks for nothing. The toolkit's own options
    // ("-style", "-platform" …) are known.
    [[nodiscard]] static Kommandozeile lesen(const QStringList &argumente);

    // What this start wants of a program that runs already; absent when nothing.
    [[nodiscard]] std::optional<Wunsch> wunsch() const;
};

// What "--help" prints.
[[nodiscard]] QString hilfetext();

// A line for each argument that is ignored, each with its line feed; empty when there is none.
[[nodiscard]] QString bemerkungen(const Kommandozeile &kommandozeile);

} // namespace kalvaro
