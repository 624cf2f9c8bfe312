#include "ui/unterlage.h"

#include "ui/farbe.h"

#include <QWidget>

namespace kalvaro {

QColor untergrund(const QWidget &widget)
{
    for (const QWidget *w = &widget; !w->isWindow() && w->parentWidget() != nullptr;) {
        w = w->parentWidget();
        if (const auto *const unterlage = dynamic_cast<const Unterlage *>(w)) {
            return unterlage->grundfarbe();
        }
    }
    return Farbe::fenster(widget.palette());
}

} // namespace kalvaro
