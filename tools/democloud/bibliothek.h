#pragma once

#include <QByteArray>

namespace kalvaro::democloud {

// A generated library: always the same for the same size.

// The largest one on request.
inline constexpr int meistePlaylisten = 1'000'000;

// The JSON array "playlisten" with `anzahl` playlists in folders, three levels deep at least and
// deeper with size (seven for 100,000); the folders come on top of the number.
[[nodiscard]] QByteArray bibliothek(qint64 anzahl);

} // namespace kalvaro::democloud
