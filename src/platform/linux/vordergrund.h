#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>

#include <cstdint>
#include <vector>

class QWindow;
struct xcb_connection_t;

namespace kalvaro {

// Brings windows of this program to the front and to the workspace that is shown, unrolled, as an
// X11 pager does, "Extended Window Manager Hints" 1.5, _NET_ACTIVE_WINDOW: what an application asks
// for itself may be refused, and a window on another workspace then only blinks in a task bar.
// Needs a QGuiApplication.
class Vordergrund final : public QAbstractNativeEventFilter
{
public:
    Vordergrund();
    ~Vordergrund() override; // removes the filter
    Vordergrund(const Vordergrund &) = delete;
    Vordergrund &operator=(const Vordergrund &) = delete;

    // False, and nothing has happened, where no X11 window manager takes such requests. `kennung`
    // is the startup notification that the window answers, if there is one.
    bool holen(const QWindow &fenster, const QByteArray &kennung);

    bool nativeEventFilter(const QByteArray &art, void *ereignis, qintptr *ergebnis) override;

private:
    [[nodiscard]] uint32_t atom(const char *name) const;
    [[nodiscard]] std::vector<uint32_t> werte(uint32_t fenster, const char *name) const;
    [[nodiscard]] bool unterstuetzt() const;
    void herbringen() const;
    void ausrollen() const;
    void anMelder(const QByteArray &nachricht) const;

    xcb_connection_t *x_ = nullptr;
    uint32_t wurzel_ = 0;
    uint32_t aktiv_ = 0;    // atom _NET_ACTIVE_WINDOW
    uint32_t zeitmal_ = 0;  // atom of the property that is touched to learn the server's time
    uint32_t erwartet_ = 0; // the window that waits for it
};

} // namespace kalvaro
