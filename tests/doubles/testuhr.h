#pragma once

#include "doubles/ereignisse.h"
#include "foundation/uhr.h"

#include <map>
#include <utility>

namespace kalvaro {

// A clock that moves only when the test moves it. Starts on Friday, 2026-03-13 at 18:07:00.
class Testuhr final : public Uhr
{
public:
    Testuhr() = default;

    // `nachlauf` takes the place of the event loop in vor(): a cheaper one for long runs.
    explicit Testuhr(void (*nachlauf)())
        : ganz(nachlauf)
        , kurz(nachlauf)
    {
    }

    [[nodiscard]] QDateTime jetzt() const override;
    [[nodiscard]] std::chrono::milliseconds laufzeit() const override { return vergangen; }
    [[nodiscard]] Weckruf nach(Sekunden dauer, std::function<void()> ruf) override;
    [[nodiscard]] Weckruf alle(Sekunden abstand, std::function<void()> ruf) override;

    // Moves on by `dauer` and runs all that becomes due on the way, in order of time; calls that
    // are due at one moment run in the order in which they were set. Between two calls the event
    // loop has a turn; before the first and after the last, all that is posted happens.
    void vor(Sekunden dauer);

    // Sets date and time off by `weite`, as somebody does who sets the clock: nothing becomes due.
    void verstellen(Sekunden weite);

    // How many calls are still due.
    [[nodiscard]] qsizetype offen() const { return std::ssize(termine); }

private:
    class Termin;
    using Zeitpunkt = std::pair<std::chrono::milliseconds, quint64>; // moment, order of setting

    Weckruf setzen(std::chrono::milliseconds dauer, bool wiederholt, std::function<void()> ruf);
    static void eineRunde();

    void (*const ganz)() = ereignisseAbarbeiten;
    void (*const kurz)() = eineRunde;
    std::chrono::milliseconds vergangen{0};
    std::chrono::milliseconds verstellt{0};
    quint64 zaehler = 0;
    std::map<Zeitpunkt, Termin *> termine;
};

} // namespace kalvaro
