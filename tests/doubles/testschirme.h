#pragma once

#include <QList>
#include <QSize>

namespace kalvaro {

// Gives the application that is made next these screens, from left to right, the first of them
// being the primary one. They are offscreen, and windows have a frame of two pixels there.
void schirmeEinrichten(const QList<QSize> &groessen);

} // namespace kalvaro
