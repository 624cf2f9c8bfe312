#pragma once

namespace kalvaro {

// Tells screen readers what Qt 6.4 keeps to itself: that a row was opened or closed, and what a new
// description says. It goes out as events of AT-SPI 2, in Qt's own name. Costs nothing while no
// assistive technology is active.
void vorlesebusEinrichten();

} // namespace kalvaro
