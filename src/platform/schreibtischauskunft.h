#pragma once

#include <QString>

namespace kalvaro {

// What the desktop session offers the program, for the check-up. Only looks: nothing is started and
// nothing changed. Each question may block, for 2 s at most.
class Schreibtischauskunft
{
public:
    enum class Leiste {
        StatusNotifier,
        XEmbed,
        Keine, // nothing shows items, or there is no display to ask
    };

    struct Mitteilungsdienst
    {
        enum class Zustand {
            Laeuft,
            BeiBedarf, // starts with the first notification
            Stumm,     // runs, but does not answer
            Keiner,
        };
        Zustand zustand = Zustand::Keiner;
        QString name{}; // and version, as it calls itself; while it runs

        bool operator==(const Mitteilungsdienst &) const = default;
    };

    // The file that starts the program at login.
    struct Anmeldeeintrag
    {
        QString datei{};
        bool da = false;
        QString abgeschaltet{}; // the line in it that switches it off; empty when none does
        QString programm{};     // that it starts; empty when it names none
        bool ausfuehrbar = false;

        bool operator==(const Anmeldeeintrag &) const = default;
    };

    Schreibtischauskunft() = default;
    Schreibtischauskunft(const Schreibtischauskunft &) = delete;
    Schreibtischauskunft &operator=(const Schreibtischauskunft &) = delete;
    virtual ~Schreibtischauskunft() = default;

    // Whether the message bus of the session answers.
    [[nodiscard]] virtual bool sitzungsbus() const = 0;

    [[nodiscard]] virtual Mitteilungsdienst mitteilungsdienst() const = 0;

    // What shows the item in the menu bar or tray.
    [[nodiscard]] virtual Leiste leiste() const = 0;

    [[nodiscard]] virtual Anmeldeeintrag anmeldeeintrag() const = 0;
};

} // namespace kalvaro
