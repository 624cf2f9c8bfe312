#pragma once

#include <QString>

namespace kalvaro {

// What an errno of starting the program `datei` means, as a German sentence that names it.
[[nodiscard]] QString startfehlertext(int fehler, const QString &datei);

} // namespace kalvaro
