#pragma once

#include <QMargins>
#include <QSize>

class QWidget;

namespace kalvaro {

// What the desktop puts around a window that is shown; before it has done so, what it puts around
// the window's parent, or else a guess.
[[nodiscard]] QMargins fensterrahmen(const QWidget &fenster);

// How large the content of a window may become: its screen without panels and without its frame. A
// window that is not shown yet counts as on its parent's screen. In logical pixels.
[[nodiscard]] QSize fensterplatz(const QWidget &fenster);

// Puts a window, with its frame, into the middle of its screen.
void mittigSetzen(QWidget &fenster);

// Moves a window whose frame has grown past the lower or the right edge of its screen back, but
// never past the other edge.
void hereinruecken(QWidget &fenster);

} // namespace kalvaro
