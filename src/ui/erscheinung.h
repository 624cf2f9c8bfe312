#pragma once

#include "foundation/farbwunsch.h"

#include <QObject>
#include <QPalette>

#include <optional>

class QApplication;

namespace kalvaro {

// The program's own colours, for a desktop that brings none.
[[nodiscard]] QPalette eigenePalette(bool dunkel);

// The application's look. A style that the desktop brings stays, with its colours; otherwise the
// style is ours, and the palette too unless the desktop brings one that suits its own wish.
class Erscheinung final : public QObject
{
    Q_OBJECT

public:
    explicit Erscheinung(QApplication &anwendung, Farbwunsch wunsch = {});

    // While the program runs; what is open is drawn anew.
    void anpassen(Farbwunsch wunsch);

protected:
    bool eventFilter(QObject *objekt, QEvent *ereignis) override;

private:
    QApplication &anwendung_;
    Farbwunsch wunsch_;
    bool eigenerStil_ = false;
    std::optional<QPalette> mitgebracht_; // the desktop's; QPalette() stands for it as it is by now
};

// The same for a program that does not follow its desktop.
inline void erscheinungEinrichten(QApplication &anwendung, Farbwunsch wunsch = {})
{
    [[maybe_unused]] const Erscheinung erscheinung(anwendung, wunsch);
}

// Whether the system asks for less motion: nothing turns and nothing fades then.
[[nodiscard]] bool wenigerBewegung();

} // namespace kalvaro
