#pragma once

#include "platform/farbschema.h"
#include "platform/linux/farbportal.h"
#include "platform/linux/xsettings.h"

#include <QObject>

namespace kalvaro {

// Asks the desktop portal first, then the toolkit where it knows such a thing. The theme is that of
// GTK: from $GTK_THEME, the settings of the X11 display, or the user's settings.ini.
class LinuxFarbschema final : public QObject, public Farbschema
{
    Q_OBJECT

public:
    // `portal` is what it has answered already; absent: it is asked.
    LinuxFarbschema(const QDBusConnection &sitzung, std::optional<Helligkeit> portal);

    [[nodiscard]] Farbwunsch wunsch() const override;
    void beiWechsel(std::function<void()> gewechselt) override;

private Q_SLOTS:
    void pruefen();

private:
    void spaeterPruefen();
    void werkzeugBeobachten();

    Farbportal portal_;
    XSettings xsettings_;
    Farbwunsch bisher_;
    std::function<void()> gewechselt_;
};

} // namespace kalvaro
