#pragma once

#include "foundation/ordnerlage.h"
#include "platform/schreibtischauskunft.h"
#include "pruefung/befund.h"
#include "rekordbox/installation.h"

namespace kalvaro {

// Findings about this computer, each from the facts alone.

[[nodiscard]] Befund datenordnerbefund(const Ordnerlage &lage);

// `ordner` is where the copies were looked for.
[[nodiscard]] Befund rekordboxbefund(const QList<Installation> &installationen,
                                     const QString &ordner);

// Never a fault: whether rekordbox and its agent run.
[[nodiscard]] Befund prozessbefund(bool haupt, bool agent);

[[nodiscard]] Befund sitzungsbusbefund(bool erreichbar);

// `bus`: whether there is a session bus to ask over.
[[nodiscard]] Befund mitteilungsbefund(const Schreibtischauskunft::Mitteilungsdienst &dienst,
                                       bool bus);

// Never a fault: some desktops have no place for the item.
[[nodiscard]] Befund leistenbefund(Schreibtischauskunft::Leiste leiste);

// Not to start at login is no fault; an entry that does not start the program is one.
[[nodiscard]] Befund anmeldebefund(const Schreibtischauskunft::Anmeldeeintrag &eintrag);

// Never a fault. `qt` and `system` are the versions of the toolkit and the operating system.
[[nodiscard]] Befund versionsbefund(const QString &qt, const QString &system);

} // namespace kalvaro
