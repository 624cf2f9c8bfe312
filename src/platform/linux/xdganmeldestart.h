#pragma once

#include "foundation/konstanten.h"
#include "platform/startdatei.h"

#include <optional>

namespace kalvaro {

// The executable to start at login: the one that runs, or the AppImage that it runs from. `eigenes`
// is the path of the running one.
[[nodiscard]] QString startprogramm(const QString &eigenes);

// The folder of the user's autostart entries, $XDG_CONFIG_HOME/autostart ("Desktop Application
// Autostart Specification" 0.5).
[[nodiscard]] QString autostartordner();

// The program's own entry in such a folder.
[[nodiscard]] QString autostartdatei(const QString &ordner = autostartordner());

// Start at login by an autostart entry. `symbol` is the name of its icon in the icon theme, empty
// when there is none; absent, the theme is asked whenever an entry is written or compared, which
// needs a QGuiApplication.
class XdgAnmeldestart final : public Startdatei
{
public:
    explicit XdgAnmeldestart(QString programm, const QString &ordner = autostartordner(),
                             std::optional<QString> symbol = KENNUNG);

    // Of the running program, with its icon where that is installed.
    XdgAnmeldestart();

private:
    [[nodiscard]] QByteArray inhalt() const override;
    [[nodiscard]] bool ueberholt(const QByteArray &vorhanden) const override;

    const QString programm_;
    const std::optional<QString> symbol_;
};

} // namespace kalvaro
