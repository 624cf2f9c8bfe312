#pragma once

#include "welt.h"

namespace kalvaro::democloud {

// The world of a first start: changes wait in both directions, two other devices come and go, and
// each rekordbox session leaves something to save. Last synced half an hour before `jetzt`.
[[nodiscard]] Welt beispielwelt(const QDateTime &jetzt);

} // namespace kalvaro::democloud
