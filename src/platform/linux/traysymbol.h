#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace kalvaro {

// The icon of the item: the drawing `name` as a mask in `farbe`, drawn anew at each size and scale.
[[nodiscard]] QIcon traysymbol(const QString &name, const QColor &farbe);

// The name under which a host finds the drawing `name` in its icon theme and colours it itself;
// empty when it is not installed there.
[[nodiscard]] QString symbolImThema(const QString &name);

} // namespace kalvaro
