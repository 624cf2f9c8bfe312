#pragma once

#include "platform/arbeitsplatz.h"

#include <memory>

namespace kalvaro {

class Logindwache;
class Uhr;
class Vordergrund;

// The desktop session under Linux. Needs a QGuiApplication for oeffnen() only.
class LinuxArbeitsplatz final : public Arbeitsplatz
{
public:
    // `uhr` must outlive this object.
    explicit LinuxArbeitsplatz(Uhr &uhr);
    ~LinuxArbeitsplatz() override;

    // Runs the bundle's CFBundleExecutable with an environment free of what is meant for this
    // program alone, in the home folder. A new window comes to the front by itself: no activation
    // token is passed on.
    void starten(const QString &buendel, QObject *besitzer,
                 std::function<void(std::optional<QString>)> fertig) override;

    void oeffnen(const QUrl &adresse) override;

    // By the window manager of an X11 desktop, else by the toolkit, with the activation that the
    // environment names.
    void nachVorn(QWindow &fenster) override;

    // By logind on the system bus.
    void beiAufwachen(std::function<void()> geweckt) override;

    // Nothing to do: the task bar shows an application exactly while it has windows.
    void auftreten(Auftritt auftritt) override;

private:
    Uhr &uhr_;
    std::unique_ptr<Logindwache> wache_;       // while somebody listens
    std::unique_ptr<Vordergrund> vordergrund_; // once a window came to the front
};

} // namespace kalvaro
