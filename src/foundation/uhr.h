#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

namespace kalvaro {

// A length of time in seconds, fractions allowed.
using Sekunden = std::chrono::duration<double>;

// Something that is due later. Destroying it cancels what is still due; that is safe at any time,
// also from within its own call.
class Wecker
{
public:
    Wecker() = default;
    Wecker(const Wecker &) = delete;
    Wecker &operator=(const Wecker &) = delete;
    virtual ~Wecker() = default;
};

using Weckruf = std::unique_ptr<Wecker>;

// The clock. All time that the program waits for passes through it, so tests run in virtual time.
// Calls are made on the main thread, from the event loop, never from within nach() or alle().
class Uhr
{
public:
    Uhr() = default;
    Uhr(const Uhr &) = delete;
    Uhr &operator=(const Uhr &) = delete;
    virtual ~Uhr() = default;

    // The local date and time. It may jump: for a length of time take laufzeit().
    [[nodiscard]] virtual QDateTime jetzt() const = 0;

    // Time since some fixed moment, counted steadily whatever happens to date and time.
    [[nodiscard]] virtual std::chrono::milliseconds laufzeit() const = 0;

    // Calls `ruf` once, `dauer` from now.
    [[nodiscard]] virtual Weckruf nach(Sekunden dauer, std::function<void()> ruf) = 0;

    // Calls `ruf` every `abstand`, first one `abstand` from now.
    [[nodiscard]] virtual Weckruf alle(Sekunden abstand, std::function<void()> ruf) = 0;
};

// The clock of the system, over the event loop's timers.
class Systemuhr final : public Uhr
{
public:
    [[nodiscard]] QDateTime jetzt() const override;
    [[nodiscard]] std::chrono::milliseconds laufzeit() const override;
    [[nodiscard]] Weckruf nach(Sekunden dauer, std::function<void()> ruf) override;
    [[nodiscard]] Weckruf alle(Sekunden abstand, std::function<void()> ruf) override;
};

} // namespace kalvaro
