#pragma once

#include <QColor>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

struct xcb_connection_t;

namespace kalvaro {

// The tray of an X11 panel, "System Tray Protocol Specification" 0.3: owns the selection on the
// display, says which colour its text has and counts who asks to be embedded. It embeds nothing.
class Leiste
{
public:
    // How it makes itself known.
    enum class Ansage {
        Keine,
        Richtig,
        FalscheAuswahl,   // the message names another selection
        FalscheNachricht, // a message of another kind names the right one
    };

    explicit Leiste(const QString &anzeige, const std::optional<QColor> &schrift = {},
                    Ansage ansage = Ansage::Richtig);
    ~Leiste(); // the selection goes with the connection
    Leiste(const Leiste &) = delete;
    Leiste &operator=(const Leiste &) = delete;

    // Makes itself known, again.
    void ansagen(Ansage ansage) const;

    // Sets a property of its window; `format` other than 32 makes nonsense of it.
    void setzen(const char *name, uint32_t art, const std::vector<uint32_t> &werte,
                uint8_t format = 32) const;

    // Gives the selection to another window of its own; the first one stays or goes.
    void fensterWechseln(bool altesBleibt);

    // How often an item has asked to be embedded since the last call.
    [[nodiscard]] int bitten() const;

private:
    void fensterAnlegen();

    xcb_connection_t *const x_;
    uint32_t fenster_ = 0;
};

// Has the window manager roll a window up to its title bar, as its own menu would.
void aufrollen(const QString &anzeige, uint32_t fenster);

// Has it close a window, as a task bar would. Its key for that is not always there at once: some
// take their keys anew shortly after their start.
void schliessen(const QString &anzeige, uint32_t fenster);

} // namespace kalvaro
