#pragma once

#include <QIcon>
#include <QString>

namespace kalvaro {

// The drawing `name` as a template image: only where it is inked counts, and the menu bar colours
// it, light on dark or dark on light, also while its menu is open. 18 points high, as the "Human
// Interface Guidelines" have it, for screens of one and of two pixels to the point. Null when there
// is no such drawing.
[[nodiscard]] QIcon leistenzeichen(const QString &name);

} // namespace kalvaro
