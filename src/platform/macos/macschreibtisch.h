#pragma once

#include "platform/schreibtischauskunft.h"

#include <QDir>

#include <functional>

namespace kalvaro {

// What a session under macOS offers the program, for the check-up.
class MacSchreibtisch final : public Schreibtischauskunft
{
public:
    // `sitzung` tells whether there is one with a window server, `heim` is the home folder.
    explicit MacSchreibtisch(std::function<bool()> sitzung, QString heim = QDir::homePath());

    // The services of a session are reached by way of launchd, which is there with it.
    [[nodiscard]] bool sitzungsbus() const override;

    // The notification centre is part of the session. Whether the user lets it show ours, it tells
    // only a program in a bundle, and later than this may take.
    [[nodiscard]] Mitteilungsdienst mitteilungsdienst() const override;

    // The menu bar takes status items as they are.
    [[nodiscard]] Leiste leiste() const override;

    [[nodiscard]] Anmeldeeintrag anmeldeeintrag() const override;

private:
    const std::function<bool()> sitzung_;
    const QString heim_;
};

} // namespace kalvaro
