#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>

namespace kalvaro {

// What the drawing is drawn in.
struct Leistentinte
{
    QColor strich{};
    QColor rand{}; // around it; invalid for none

    // For a bar that has said what it draws its text in.
    [[nodiscard]] static Leistentinte gesagt(const QColor &strich);

    // For one whose colour is a guess: with a rim in the opposite tone, either of the two is to be
    // seen on any bar.
    [[nodiscard]] static Leistentinte geraten(const QColor &strich);
};

// The drawing `name`, `pixel` pixels square; null when there is no such drawing.
[[nodiscard]] QImage traybild(const QString &name, int pixel, const Leistentinte &tinte);

// The same as an icon, drawn anew at each size and scale.
[[nodiscard]] QIcon traysymbol(const QString &name, const Leistentinte &tinte);

// The name under which a host finds the drawing `name` in its icon theme and colours it itself;
// empty when it is not installed there, in scalable/status or symbolic/status.
[[nodiscard]] QString symbolImThema(const QString &name);

} // namespace kalvaro
