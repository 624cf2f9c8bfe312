#pragma once

#include "foundation/farbwunsch.h"

#include <QPalette>

#include <optional>

class QApplication;

namespace kalvaro {

// The program's own colours, for a desktop that brings none.
[[nodiscard]] QPalette eigenePalette(bool dunkel);

// The application's look. A style that the desktop brings stays, with its colours; otherwise the
// style is ours, and the palette too unless the desktop brings one that suits its own wish.
class Erscheinung
{
public:
    explicit Erscheinung(QApplication &anwendung, Farbwunsch wunsch = {});

    // While the program runs; what is open is drawn anew.
    void anpassen(Farbwunsch wunsch);

private:
    QApplication &anwendung_;
    bool eigenerStil_ = false;
    std::optional<QPalette> mitgebracht_; // the desktop's
};

// The same for a program that does not follow its desktop.
inline void erscheinungEinrichten(QApplication &anwendung, Farbwunsch wunsch = {})
{
    [[maybe_unused]] const Erscheinung erscheinung(anwendung, wunsch);
}

// Whether the system asks for less motion: nothing turns and nothing fades then.
[[nodiscard]] bool wenigerBewegung();

} // namespace kalvaro
