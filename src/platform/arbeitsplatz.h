#pragma once

#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

class QObject;
class QWindow;

namespace kalvaro {

// What the program asks of the desktop session.
class Arbeitsplatz
{
public:
    enum class Auftritt {
        Regulaer, // an application with window, dock or task bar entry
        Zubehoer, // lives in the menu bar or tray only
    };

    Arbeitsplatz() = default;
    Arbeitsplatz(const Arbeitsplatz &) = delete;
    Arbeitsplatz &operator=(const Arbeitsplatz &) = delete;
    virtual ~Arbeitsplatz() = default;

    // Starts the application bundle at the local path `buendel`, independent of this program, and
    // brings it to the front. `fertig` (see Einmalruf) gets the reason in German when it could not
    // be started, absent when it runs.
    virtual void starten(const QString &buendel, QObject *besitzer,
                         std::function<void(std::optional<QString>)> fertig) = 0;

    // Opens an http or https address in the default browser; any other address is ignored.
    virtual void oeffnen(const QUrl &adresse) = 0;

    // `geweckt` is called, from the event loop, whenever the computer has woken from sleep; an
    // empty one ends that.
    virtual void beiAufwachen(std::function<void()> geweckt) = 0;

    // Brings a window of this program that is shown to the front, from another workspace too: the
    // user has asked for it.
    virtual void nachVorn(QWindow &fenster) = 0;

    // How the desktop presents the program from now on.
    virtual void auftreten(Auftritt auftritt) = 0;
};

} // namespace kalvaro
