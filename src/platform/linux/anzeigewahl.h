#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace kalvaro {

// What is said about where to draw.
struct Anzeigeangaben
{
    QString plattform{}; // "-platform" or $QT_QPA_PLATFORM, "xcb" or "wayland;xcb"
    QString x11{};       // $DISPLAY
    QString wayland{};   // $WAYLAND_DISPLAY

    [[nodiscard]] static Anzeigeangaben derUmgebung(const QString &plattform);
};

struct Anzeigewahl
{
    QString plattform{};             // for $QT_QPA_PLATFORM; empty: as it is
    std::optional<QString> mangel{}; // why nothing can be shown, in German

    bool operator==(const Anzeigewahl &) const = default;
};

// Where to draw. Where no display answers, "offscreen", so that a picture can be drawn all the
// same: the toolkit itself would abort. A platform other than X11 and Wayland that was asked for
// stays. Whether the displays answer is asked only where it matters: an X server may be started by
// the question.
[[nodiscard]] Anzeigewahl anzeigeWaehlen(const Anzeigeangaben &angaben,
                                         const std::function<bool()> &x11Antwortet,
                                         const std::function<bool()> &waylandAntwortet);

// Whether a compositor listens on the socket `name`, which lies in $XDG_RUNTIME_DIR or is a path.
[[nodiscard]] bool waylandAntwortet(const QString &name);

} // namespace kalvaro
