#pragma once

#include <QAbstractNativeEventFilter>
#include <QColor>

#include <cstdint>
#include <functional>
#include <optional>

struct xcb_connection_t;

namespace kalvaro {

// The tray of an X11 desktop, "System Tray Protocol Specification" 0.3: whoever owns the selection
// _NET_SYSTEM_TRAY_Sn. On other platforms there never is one. Needs a QGuiApplication.
class XEmbedtray final : public QAbstractNativeEventFilter
{
public:
    XEmbedtray();
    ~XEmbedtray() override;
    XEmbedtray(const XEmbedtray &) = delete;
    XEmbedtray &operator=(const XEmbedtray &) = delete;

    [[nodiscard]] bool vorhanden() const;

    // What the panel draws its text in, where it says so (_NET_SYSTEM_TRAY_COLORS, which panels
    // based on GTK set).
    [[nodiscard]] std::optional<QColor> schriftfarbe() const;

    // `gewechselt` is called whenever a tray has taken the selection or the one that had it is
    // gone.
    void beiWechsel(std::function<void()> gewechselt);

    bool nativeEventFilter(const QByteArray &art, void *ereignis, qintptr *ergebnis) override;

private:
    [[nodiscard]] uint32_t atom(const char *name) const;
    [[nodiscard]] uint32_t besitzer() const;
    void beobachten();

    xcb_connection_t *x_ = nullptr;
    uint32_t auswahl_ = 0;    // atom of the selection
    uint32_t manager_ = 0;    // atom "MANAGER" of the ICCCM
    uint32_t beobachtet_ = 0; // the window of the tray, whose end is told
    std::function<void()> ruf_;
};

} // namespace kalvaro
