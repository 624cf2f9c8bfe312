#pragma once

namespace kalvaro {

class Hauptfenster;

// Builds the main menu and installs it: above the window's content, or where the system shows one
// menu bar for all programs, there.
void menueBauen(Hauptfenster &fenster);

} // namespace kalvaro
