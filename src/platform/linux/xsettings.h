#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>

#include <functional>

struct xcb_connection_t;

namespace kalvaro {

// The settings that an X11 desktop hands to its programs, "XSETTINGS" 0.5, over the toolkit's
// connection. Nothing where the application is shown by something else. Needs the application
// object.
class XSettings final : public QAbstractNativeEventFilter
{
public:
    // `gewechselt` is called from within the handling of an event.
    explicit XSettings(std::function<void()> gewechselt);
    ~XSettings() override;
    XSettings(const XSettings &) = delete;
    XSettings &operator=(const XSettings &) = delete;

    // The property as it is now; empty without a settings manager.
    [[nodiscard]] QByteArray eigenschaft() const;

    bool nativeEventFilter(const QByteArray &art, void *ereignis, qintptr *ergebnis) override;

private:
    [[nodiscard]] uint32_t atom(const QByteArray &name) const;

    xcb_connection_t *x_ = nullptr;
    uint32_t auswahl_ = 0;
    uint32_t eigenschaft_ = 0;
    uint32_t manager_ = 0;
    const std::function<void()> gewechselt_;
};

} // namespace kalvaro
