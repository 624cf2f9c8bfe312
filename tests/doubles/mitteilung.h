#pragma once

#include <QString>

#include <optional>

namespace kalvaro {

// A notification as it was posted.
struct Mitteilung
{
    QString titel{};
    QString inhalt{};
    std::optional<QString> ziel{};

    bool operator==(const Mitteilung &) const = default;
};

} // namespace kalvaro
