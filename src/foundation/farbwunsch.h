#pragma once

namespace kalvaro {

enum class Helligkeit { Offen, Hell, Dunkel };

// How light or dark the desktop wants programs to be.
struct Farbwunsch
{
    Helligkeit ausdruecklich = Helligkeit::Offen; // wanted of every program
    Helligkeit thema = Helligkeit::Offen;         // of its theme; counts where it brings no palette

    bool operator==(const Farbwunsch &) const = default;
};

} // namespace kalvaro
