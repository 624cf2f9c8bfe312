#pragma once

#include <QPalette>

class QApplication;

namespace kalvaro {

// The program's own colours, for a desktop that brings none.
[[nodiscard]] QPalette eigenePalette(bool dunkel);

// Gives the application its look: where the desktop brings a palette or a style of its own, that
// stays; otherwise ours. `dunkel` chooses ours.
void erscheinungEinrichten(QApplication &anwendung, bool dunkel = false);

// Whether the system asks for less motion: nothing turns and nothing fades then.
[[nodiscard]] bool wenigerBewegung();

} // namespace kalvaro
