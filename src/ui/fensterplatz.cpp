#include "ui/fensterplatz.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int titelleiste = 40; // more than most desktops take
constexpr int leiste = 48;      // likewise for a panel

QRect schirmflaeche(const QWidget &fenster)
{
    const QWidget *const eltern = fenster.isVisible() ? nullptr : fenster.parentWidget();
    const QScreen *const schirm = (eltern != nullptr ? eltern : &fenster)->screen();
    const QRect frei = schirm->availableGeometry();
    // Wayland tells nobody of its panels.
    const bool verschwiegen =
        frei == schirm->geometry() && QGuiApplication::platformName().startsWith(u"wayland"_s);
    return verschwiegen ? frei.adjusted(0, 0, 0, -leiste) : frei;
}

} // namespace

QMargins fensterrahmen(const QWidget &fenster)
{
    const QWidget *eltern = &fenster;
    while (eltern != nullptr) {
        const QWidget *const oben = eltern->window();
        const QWindow *const handle = oben->isVisible() ? oben->windowHandle() : nullptr;
        if (handle != nullptr && !handle->frameMargins().isNull()) {
            return handle->frameMargins();
        }
        eltern = oben->parentWidget();
    }
    return {0, titelleiste, 0, 0};
}

QSize fensterplatz(const QWidget &fenster)
{
    return schirmflaeche(fenster).size().shrunkBy(fensterrahmen(fenster));
}

void mittigSetzen(QWidget &fenster)
{
    const QRect frei = schirmflaeche(fenster);
    const QSize ueber = frei.size() - fenster.size().grownBy(fensterrahmen(fenster));
    fenster.move(frei.left() + std::max(0, ueber.width() / 2),
                 frei.top() + std::max(0, ueber.height() / 2));
}

void hereinruecken(QWidget &fenster)
{
    const QRect frei = schirmflaeche(fenster);
    const QRect ganz = fenster.geometry().marginsAdded(fensterrahmen(fenster));
    const int rechts = std::min(ganz.right() - frei.right(), ganz.left() - frei.left());
    const int unten = std::min(ganz.bottom() - frei.bottom(), ganz.top() - frei.top());
    if (rechts > 0 || unten > 0) {
        fenster.move(fenster.pos() - QPoint(std::max(0, rechts), std::max(0, unten)));
    }
}

} // namespace kalvaro
