#include "platform/linux/trayxembed.h"

#include "platform/linux/xantwort.h"

#include <QGuiApplication>

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace kalvaro {

namespace {

constexpr uint32_t nichts = 0; // None, of windows and of atoms

} // namespace

XEmbedtray::XEmbedtray()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || QGuiApplication::platformName() != u"xcb") {
        return; // the offscreen platform offers the interface too, without a connection
    }
    x_ = x11->connection();
    char *rechner = nullptr;
    int anzeige = 0;
    int schirm = 0;
    xcb_parse_display(nullptr, &rechner, &anzeige, &schirm); // $DISPLAY
    std::free(rechner);
    auswahl_ = atom(("_NET_SYSTEM_TRAY_S" + QByteArray::number(schirm)).constData());
    manager_ = atom("MANAGER");
    // Qt itself listens on the root window for the message that announces a manager.
    qGuiApp->installNativeEventFilter(this);
}

XEmbedtray::~XEmbedtray() = default; // removes the filter

uint32_t XEmbedtray::atom(const char *name) const
{
    const auto frage = xcb_intern_atom(x_, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const auto antwort = gelesen(xcb_intern_atom_reply(x_, frage, nullptr));
    return antwort ? antwort->atom : nichts;
}

uint32_t XEmbedtray::besitzer() const
{
    if (x_ == nullptr) {
        return nichts;
    }
    const auto antwort =
        gelesen(xcb_get_selection_owner_reply(x_, xcb_get_selection_owner(x_, auswahl_), nullptr));
    return antwort ? antwort->owner : nichts;
}

bool XEmbedtray::vorhanden() const
{
    return besitzer() != nichts;
}

std::optional<QColor> XEmbedtray::schriftfarbe() const
{
    constexpr uint32_t worte = 3; // red, green and blue of the text, 16 bits each
    const uint32_t fenster = besitzer();
    if (fenster == nichts) {
        return {};
    }
    const auto frage = xcb_get_property(x_, 0, fenster, atom("_NET_SYSTEM_TRAY_COLORS"),
                                        XCB_ATOM_CARDINAL, 0, worte);
    const auto antwort = gelesen(xcb_get_property_reply(x_, frage, nullptr));
    if (!antwort || antwort->format != 32 || antwort->value_len < worte) {
        return {};
    }
    const auto *werte = static_cast<const uint32_t *>(xcb_get_property_value(antwort.get()));
    const auto anteil = [werte](int i) { return static_cast<int>(werte[i] >> 8U & 0xFFU); };
    return QColor(anteil(0), anteil(1), anteil(2));
}

void XEmbedtray::beiWechsel(std::function<void()> gewechselt)
{
    ruf_ = std::move(gewechselt);
    beobachten();
}

// One that ends meanwhile has no window left to be told of: whoever has the selection then is the
// next to be looked at.
void XEmbedtray::beobachten()
{
    constexpr int versuche = 3;
    beobachtet_ = nichts;
    for (int i = 0; i < versuche && beobachtet_ != besitzer(); ++i) {
        beobachtet_ = besitzer();
        const uint32_t maske = XCB_EVENT_MASK_STRUCTURE_NOTIFY; // the one that Qt takes as well
        std::free(xcb_request_check(
            x_, xcb_change_window_attributes_checked(x_, beobachtet_, XCB_CW_EVENT_MASK, &maske)));
    }
}

bool XEmbedtray::nativeEventFilter(const QByteArray &art, void *ereignis, qintptr * /*ergebnis*/)
{
    if (art != "xcb_generic_event_t" || !ruf_) {
        return false;
    }
    const auto was = static_cast<const xcb_generic_event_t *>(ereignis)->response_type & 0x7FU;
    const auto *nachricht = static_cast<const xcb_client_message_event_t *>(ereignis);
    const auto *ende = static_cast<const xcb_destroy_notify_event_t *>(ereignis);
    const bool neue = was == XCB_CLIENT_MESSAGE && nachricht->type == manager_ &&
                      nachricht->data.data32[1] == auswahl_;
    if (neue || (was == XCB_DESTROY_NOTIFY && ende->window == beobachtet_)) {
        beobachten();
        ruf_();
    }
    return false;
}

} // namespace kalvaro
