#pragma once

#include "platform/linux/dbusverbindung.h"
#include "platform/linux/xdganmeldestart.h"
#include "platform/schreibtischauskunft.h"

namespace kalvaro {

// The desktop as it shows on the session bus, on the X11 display and in the user's autostart
// folder.
class LinuxSchreibtisch final : public Schreibtischauskunft
{
public:
    explicit LinuxSchreibtisch(QDBusConnection sitzung = ::kalvaro::sitzungsbus(),
                               QString ordner = autostartordner());

    [[nodiscard]] bool sitzungsbus() const override;
    [[nodiscard]] Mitteilungsdienst mitteilungsdienst() const override;
    [[nodiscard]] Leiste leiste() const override;
    [[nodiscard]] Anmeldeeintrag anmeldeeintrag() const override;

private:
    const QDBusConnection bus_;
    const QString ordner_;
};

} // namespace kalvaro
