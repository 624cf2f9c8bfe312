#pragma once

#include <QColor>
#include <QString>

#include <optional>

struct xcb_connection_t;

namespace kalvaro {

// The tray of an X11 panel, "System Tray Protocol Specification" 0.3: owns the selection on the
// display and says which colour its text has. It embeds nothing.
class Leiste
{
public:
    Leiste(const QString &anzeige, const std::optional<QColor> &schrift);
    ~Leiste(); // the selection goes with the connection
    Leiste(const Leiste &) = delete;
    Leiste &operator=(const Leiste &) = delete;

private:
    xcb_connection_t *const x_;
};

} // namespace kalvaro
