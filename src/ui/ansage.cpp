#include "ui/ansage.h"

#include <QAccessible>
#include <QWidget>

namespace kalvaro {

void ansagen(QWidget &woher, const QString &inhalt)
{
    QWidget &fenster = *woher.window();
    if (QAccessible::isActive() && woher.isVisible() && !fenster.isMinimized() &&
        !inhalt.isEmpty()) {
        ansageAbgeben(fenster, inhalt);
    }
}

} // namespace kalvaro
