#pragma once

#include <QFont>

namespace kalvaro {

// How much larger than usual the system's font is: 1.0 up to 15 logical pixels, which is what
// desktops ship, else the proportion to 13.
[[nodiscard]] double schriftfaktor();

// The system's font at `punkt` points as designers count them: logical pixels, whatever the
// screen's resolution, times schriftfaktor().
[[nodiscard]] QFont systemschrift(double punkt, QFont::Weight gewicht = QFont::Normal);

// A length in logical pixels that grows with the system's font.
[[nodiscard]] int mass(int punkte);

} // namespace kalvaro
