#pragma once

#include <QStringView>

#include <compare>

namespace kalvaro {

// Orders two version texts: runs of digits compare as numbers, everything else character by
// character, so "1.10" comes after "1.4". No locale; numbers of any length.
[[nodiscard]] std::weak_ordering versionenVergleichen(QStringView a, QStringView b);

} // namespace kalvaro
