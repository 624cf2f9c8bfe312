#pragma once

#include <QFlags>
#include <QList>
#include <QString>

namespace kalvaro {

// One of the looks that the program may have on a desktop.
enum class Ansicht {
    Hell = 1,
    Dunkel = 2,
    Kontrast = 4, // the colours of a desktop for weak eyes
    Rechts = 8,   // read from right to left
    Gross = 16,   // a large font
    Riesig = 32,  // the largest that desktops offer
    Doppelt = 64, // two pixels for each logical one
    Krumm = 128,  // one and a quarter
};
Q_DECLARE_FLAGS(Ansichten, Ansicht)
Q_DECLARE_OPERATORS_FOR_FLAGS(Ansichten)

// Those that can be had at this process's scale, which is fixed from its start on.
[[nodiscard]] QList<Ansicht> ansichten();

[[nodiscard]] QString name(Ansicht ansicht);

void herstellen(Ansicht ansicht);

// What must be settled before the application: a font of known shape without hinting, and no
// desktop.
void umgebungFestlegen();

// Our style, with nothing that moves or blinks by itself. The clock of a scene may still turn what
// it is asked to: see Bewegung.
void stilFestlegen();

// While it lives, things move by the scene's clock.
class Bewegung
{
public:
    Bewegung();
    ~Bewegung();
    Bewegung(const Bewegung &) = delete;
    Bewegung &operator=(const Bewegung &) = delete;
};

} // namespace kalvaro
