#pragma once

#include "platform/arbeitsplatz.h"

namespace kalvaro {

// The desktop session under Linux. Needs a QGuiApplication for oeffnen() only.
class LinuxArbeitsplatz final : public Arbeitsplatz
{
public:
    // Runs the bundle's CFBundleExecutable with an environment free of what is meant for this
    // program alone, in the home folder. A new window comes to the front by itself: no activation
    // token is passed on.
    void starten(const QString &buendel, QObject *besitzer,
                 std::function<void(std::optional<QString>)> fertig) override;

    void oeffnen(const QUrl &adresse) override;

    // Nothing to do: the task bar shows an application exactly while it has windows.
    void auftreten(Auftritt auftritt) override;
};

} // namespace kalvaro
