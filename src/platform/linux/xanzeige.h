#pragma once

#include <QByteArray>

#include <chrono>
#include <memory>

namespace kalvaro {

// What an X11 display says of itself.
struct XAnzeige
{
    bool antwortet = false; // takes us as a client
    bool tray = false;      // has a tray, "System Tray Protocol Specification" 0.3

    // The connection that was asked over, while it is held. A display whose last client leaves may
    // begin anew and break what connects to it just then.
    std::shared_ptr<void> verbindung{};
};

// Asks the display `name` ("localhost:10.0", as in $DISPLAY), within `frist`: what has not answered
// by then counts as nothing. Needs no application object. libxcb can wait for ever, so it does that
// in a thread of its own, which then stays behind.
[[nodiscard]] XAnzeige xAnzeigeFragen(const QByteArray &name,
                                      std::chrono::milliseconds frist = std::chrono::seconds(5));

} // namespace kalvaro
