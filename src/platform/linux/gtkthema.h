#pragma once

#include "foundation/farbwunsch.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kalvaro {

// What a desktop of the GTK family says of its theme. Absent: nothing.
struct GtkThema
{
    std::optional<QString> name{};
    std::optional<bool> dunkelBevorzugt{}; // of several variants of a theme the dark one

    bool operator==(const GtkThema &) const = default;
};

// From the property _XSETTINGS_SETTINGS of the settings manager, "XSETTINGS" 0.5. What is cut short
// says as much as it still holds.
[[nodiscard]] GtkThema xsettingsLesen(const QByteArray &eigenschaft);

// From a settings.ini of GTK 3 or 4.
[[nodiscard]] GtkThema gtkIniLesen(const QByteArray &inhalt);

// From the value of $GTK_THEME: a name, or one with its variant ("Adwaita:dark").
[[nodiscard]] GtkThema gtkUmgebungLesen(const QString &wert);

// Whether such a theme is light or dark; open when nothing is said.
[[nodiscard]] Helligkeit helligkeit(const GtkThema &thema);

} // namespace kalvaro
