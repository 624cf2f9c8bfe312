#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace kalvaro {

// What a desktop hands over with a click so that the window it leads to may come to the front.
struct Aktivierung
{
    QByteArray marke;   // XDG_ACTIVATION_TOKEN, of the Wayland protocol xdg-activation-v1
    QByteArray kennung; // DESKTOP_STARTUP_ID, "Startup Notification Protocol" 0.2

    // That of this process's own start. Platform plug-ins of Qt take the variables away, so ask
    // before a QGuiApplication exists.
    [[nodiscard]] static Aktivierung desStarts();

    // As the "platform data" of org.freedesktop.Application ("Desktop Entry Specification" 1.5,
    // "D-Bus Activation"). What is missing or of another type there is empty here.
    [[nodiscard]] static Aktivierung ausPlattformdaten(const QVariantMap &daten);
    [[nodiscard]] QVariantMap plattformdaten() const;

    bool operator==(const Aktivierung &) const = default;
};

// Keeps an activation in the environment while it lives, where Qt and the programs it starts find
// it, and puts back afterwards what was there before.
class Aktivierungsrahmen
{
public:
    explicit Aktivierungsrahmen(const Aktivierung &aktivierung);
    ~Aktivierungsrahmen();
    Aktivierungsrahmen(const Aktivierungsrahmen &) = delete;
    Aktivierungsrahmen &operator=(const Aktivierungsrahmen &) = delete;

private:
    const Aktivierung vorher_;
};

} // namespace kalvaro
