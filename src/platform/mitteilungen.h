#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace kalvaro {

// Desktop notifications. Posting never blocks and never fails towards the caller; one that could
// not be delivered stands in the log.
class Mitteilungen
{
public:
    Mitteilungen() = default;
    Mitteilungen(const Mitteilungen &) = delete;
    Mitteilungen &operator=(const Mitteilungen &) = delete;
    virtual ~Mitteilungen() = default;

    // Shows `titel` and `inhalt` literally. Each call is a notification of its own. A click on it
    // calls what beiKlick() was given, with `ziel`.
    virtual void mitteilen(const QString &titel, const QString &inhalt,
                           const std::optional<QString> &ziel) = 0;

    // `geklickt` is called when the user clicks a notification that has a target. While it runs, a
    // program that it starts may come to the front.
    virtual void beiKlick(std::function<void(const QString &ziel)> geklickt) = 0;
};

} // namespace kalvaro
