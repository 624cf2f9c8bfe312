#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kalvaro {

// Ends the process `millisekunden` from now at the latest, with `status`, whatever it then does or
// waits for. An earlier end that was asked for stays. May be called by a signal's handler.
void spaetestensEnden(int millisekunden, int status);

// Hears SIGTERM, SIGINT and SIGHUP, as launchd(8) and a terminal send them, and passes each on to
// the event loop. The process lasts 0.7 s at the longest from then on. One at a time.
class Endesignale final : public QObject
{
    Q_OBJECT

public:
    explicit Endesignale(std::function<void()> ende);
    ~Endesignale() override;

    // Whether such a signal has come that the event loop has not seen yet.
    [[nodiscard]] static bool wartet();

private:
    std::unique_ptr<QSocketNotifier> hoerer_;
};

} // namespace kalvaro
