#include "platform/linux/vordergrund.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <xcb/xcb.h>

namespace kalvaro {

namespace {

// What an event is about; `format` in bits.
xcb_client_message_event_t nachricht(xcb_window_t fenster, xcb_atom_t art, uint8_t format)
{
    xcb_client_message_event_t eine = {};
    eine.response_type = XCB_CLIENT_MESSAGE;
    eine.format = format;
    eine.window = fenster;
    eine.type = art;
    return eine;
}

void senden(xcb_connection_t *x, xcb_window_t wurzel, uint32_t maske,
            const xcb_client_message_event_t &eine)
{
    xcb_send_event(x, 0, wurzel, maske, reinterpret_cast<const char *>(&eine));
}

} // namespace

Vordergrund::Vordergrund()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || QGuiApplication::platformName() != u"xcb") {
        return;
    }
    x_ = x11->connection();
    char *rechner = nullptr;
    int anzeige = 0;
    int schirm = 0;
    xcb_parse_display(nullptr, &rechner, &anzeige, &schirm); // $DISPLAY
    std::free(rechner);
    auto wo = xcb_setup_roots_iterator(xcb_get_setup(x_));
    while (schirm-- > 0 && wo.rem > 1) {
        xcb_screen_next(&wo);
    }
    wurzel_ = wo.data->root;
    aktiv_ = atom("_NET_ACTIVE_WINDOW");
    zeitmal_ = atom("_KALVARO_ZEIT");
    qGuiApp->installNativeEventFilter(this);
}

Vordergrund::~Vordergrund() = default;

uint32_t Vordergrund::atom(const char *name) const
{
    const auto frage = xcb_intern_atom(x_, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void *)> antwort(
        xcb_intern_atom_reply(x_, frage, nullptr), std::free);
    return antwort ? antwort->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool Vordergrund::unterstuetzt() const
{
    constexpr uint32_t hoechstens = 4096; // atoms
    const auto frage =
        xcb_get_property(x_, 0, wurzel_, atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, hoechstens);
    const std::unique_ptr<xcb_get_property_reply_t, void (*)(void *)> antwort(
        xcb_get_property_reply(x_, frage, nullptr), std::free);
    if (!antwort || antwort->format != 32) {
        return false;
    }
    const auto *atome = static_cast<const xcb_atom_t *>(xcb_get_property_value(antwort.get()));
    const auto *ende = atome + antwort->value_len;
    return std::find(atome, ende, aktiv_) != ende;
}

// A request counts by the server's time, which only an event tells: touching a property brings one.
bool Vordergrund::holen(const QWindow &fenster, const QByteArray &kennung)
{
    if (x_ == nullptr || !unterstuetzt()) {
        return false;
    }
    erwartet_ = static_cast<uint32_t>(fenster.winId());
    xcb_change_property(x_, XCB_PROP_MODE_APPEND, erwartet_, zeitmal_, XCB_ATOM_INTEGER, 32, 0,
                        nullptr);
    if (!kennung.isEmpty()) {
        anMelder("remove: ID=\"" + QByteArray(kennung).replace('\\', "\\\\").replace('"', "\\\"") +
                 '"');
    }
    xcb_flush(x_);
    return true;
}

// "Startup Notification Protocol" 0.2: to all who listen on the root window, in pieces of 20 bytes,
// the last of which holds the zero at the end. The launcher stops showing that it waits.
void Vordergrund::anMelder(const QByteArray &text) const
{
    constexpr qsizetype stueck = 20;
    xcb_client_message_event_t eine =
        nachricht(erwartet_, atom("_NET_STARTUP_INFO_BEGIN"), 8); // then each piece as it is
    const xcb_atom_t weiter = atom("_NET_STARTUP_INFO");
    for (qsizetype i = 0; i <= text.size(); i += stueck) {
        const QByteArray teil = text.mid(i, stueck).leftJustified(stueck, '\0');
        std::memcpy(eine.data.data8, teil.constData(), stueck);
        senden(x_, wurzel_, XCB_EVENT_MASK_PROPERTY_CHANGE, eine);
        eine.type = weiter;
    }
}

bool Vordergrund::nativeEventFilter(const QByteArray &art, void *ereignis, qintptr * /*ergebnis*/)
{
    if (erwartet_ == 0 || art != "xcb_generic_event_t") {
        return false;
    }
    const auto *aenderung = static_cast<const xcb_property_notify_event_t *>(ereignis);
    if ((aenderung->response_type & 0x7FU) == XCB_PROPERTY_NOTIFY &&
        aenderung->window == erwartet_ && aenderung->atom == zeitmal_) {
        constexpr uint32_t schaltleiste = 2; // a pager: the user wants it
        auto eine = nachricht(std::exchange(erwartet_, 0), aktiv_, 32);
        eine.data.data32[0] = schaltleiste;
        eine.data.data32[1] = aenderung->time;
        senden(x_, wurzel_,
               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, eine);
        xcb_flush(x_);
    }
    return false;
}

} // namespace kalvaro
