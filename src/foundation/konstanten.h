#pragma once

#include <QString>

namespace kalvaro {

// The running version: log line at start, "User-Agent" header, update comparison.
inline const QString VERSION = QStringLiteral("1.4");

// ICU identifier of the locale in which figures are shown, whatever the system's language.
inline constexpr const char *deutsch = "de_DE";

// Sentence that every result carries while the server only compares ("Probebetrieb").
inline const QString PROBE =
    QStringLiteral("Probebetrieb: kalvaro prüft vorerst nur und überträgt noch nichts.");

// Bundle id, desktop id, D-Bus name and icon name.
inline const QString KENNUNG = QStringLiteral("de.kalvaro.kalvaro");

} // namespace kalvaro
