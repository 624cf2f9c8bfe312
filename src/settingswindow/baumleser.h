#pragma once

#include "settingswindow/knotenliste.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace kalvaro {

// The tree of an answer, as baumAus(inhalt(daten)) would give it, without the tree of JSON between:
// that takes ten times what is kept of it. An answer that is no JSON has no playlists.
//
// Absent when it is too large: when what is kept would take more memory than 64 MiB and three times
// the size of `daten`, or one of its values what inhalt() does not take. Absent as well once
// `abgebrochen` says that nobody waits any more; it is asked every few thousand playlists.
[[nodiscard]] std::optional<Knotenliste> baumLesen(const QByteArray &daten,
                                                   const std::function<bool()> &abgebrochen);

} // namespace kalvaro
