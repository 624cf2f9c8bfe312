#pragma once

#include "platform/startdatei.h"

namespace kalvaro {

// The executable to start at login: the one that runs, or the AppImage that it runs from. `eigenes`
// is the path of the running one.
[[nodiscard]] QString startprogramm(const QString &eigenes);

// The folder of the user's autostart entries, $XDG_CONFIG_HOME/autostart ("Desktop Application
// Autostart Specification" 0.5).
[[nodiscard]] QString autostartordner();

// Start at login by an autostart entry.
class XdgAnmeldestart final : public Startdatei
{
public:
    explicit XdgAnmeldestart(QString programm, const QString &ordner = autostartordner());

    // Of the running program; needs a QCoreApplication.
    XdgAnmeldestart();

private:
    [[nodiscard]] QByteArray inhalt() const override;

    const QString programm_;
};

} // namespace kalvaro
