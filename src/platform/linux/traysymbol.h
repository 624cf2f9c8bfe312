#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace kalvaro {

// The icon of the item: the drawing `name` as a mask in `farbe`, drawn anew at each size and scale.
// `themenname` is the name under which a host finds it in its icon theme and colours it itself;
// empty when it is not installed there.
[[nodiscard]] QIcon traysymbol(const QString &name, const QColor &farbe, const QString &themenname);

// The theme's name of the drawing `name` when the theme has it, else empty.
[[nodiscard]] QString symbolImThema(const QString &name);

} // namespace kalvaro
