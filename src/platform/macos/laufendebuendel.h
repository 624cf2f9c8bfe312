#pragma once

#include <QStringList>

namespace kalvaro {

// The bundle locations of the applications that run in this session, as the workspace knows them.
// From the main thread only.
[[nodiscard]] QStringList laufendeBuendel();

} // namespace kalvaro
