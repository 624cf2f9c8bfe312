#include "platform/linux/xsettings.h"

#include "platform/linux/xantwort.h"

#include <QGuiApplication>

#include <cstdlib>
#include <xcb/xcb.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

XSettings::XSettings(std::function<void()> gewechselt)
    : gewechselt_(std::move(gewechselt))
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || QGuiApplication::platformName() != u"xcb") {
        return; // the offscreen platform offers the interface too, without a connection
    }
    x_ = x11->connection();
    char *rechner = nullptr;
    int anzeige = 0;
    int schirm = 0;
    if (xcb_parse_display(nullptr, &rechner, &anzeige, &schirm) != 0) { // $DISPLAY
        std::free(rechner);
    }
    auswahl_ = atom("_XSETTINGS_S" + QByteArray::number(schirm));
    eigenschaft_ = atom("_XSETTINGS_SETTINGS");
    manager_ = atom("MANAGER");
    qGuiApp->installNativeEventFilter(this);
}

XSettings::~XSettings() = default; // removes the filter

uint32_t XSettings::atom(const QByteArray &name) const
{
    const auto frage = xcb_intern_atom(x_, 0, static_cast<uint16_t>(name.size()), name.constData());
    const auto antwort = gelesen(xcb_intern_atom_reply(x_, frage, nullptr));
    return antwort ? antwort->atom : XCB_NONE;
}

QByteArray XSettings::eigenschaft() const
{
    if (x_ == nullptr) {
        return {};
    }
    const auto besitzer =
        gelesen(xcb_get_selection_owner_reply(x_, xcb_get_selection_owner(x_, auswahl_), nullptr));
    if (!besitzer || besitzer->owner == XCB_NONE) {
        return {};
    }
    // The toolkit, whose connection this is, listens for the same.
    constexpr uint32_t hoeren = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(x_, besitzer->owner, XCB_CW_EVENT_MASK, &hoeren);
    constexpr uint32_t hoechstens = 64 * 1024 / 4; // words
    const auto frage =
        xcb_get_property(x_, 0, besitzer->owner, eigenschaft_, eigenschaft_, 0, hoechstens);
    const auto antwort = gelesen(xcb_get_property_reply(x_, frage, nullptr));
    if (!antwort || antwort->format != 8) {
        return {};
    }
    return {static_cast<const char *>(xcb_get_property_value(antwort.get())),
            xcb_get_property_value_length(antwort.get())};
}

bool XSettings::nativeEventFilter(const QByteArray &art, void *ereignis, qintptr * /*ergebnis*/)
{
    if (art != "xcb_generic_event_t") {
        return false;
    }
    const auto *const allgemein = static_cast<const xcb_generic_event_t *>(ereignis);
    const unsigned nummer = allgemein->response_type & 0x7FU;
    if (nummer == XCB_PROPERTY_NOTIFY) {
        const auto *const neu = static_cast<const xcb_property_notify_event_t *>(ereignis);
        if (neu->atom == eigenschaft_) {
            gewechselt_();
        }
    } else if (nummer == XCB_CLIENT_MESSAGE) {
        const auto *const neu = static_cast<const xcb_client_message_event_t *>(ereignis);
        if (neu->type == manager_ && neu->data.data32[1] == auswahl_) {
            gewechselt_();
        }
    }
    return false;
}

} // namespace kalvaro
