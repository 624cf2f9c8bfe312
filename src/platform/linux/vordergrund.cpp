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

constexpr uint32_t schaltleiste = 2; // who asks: a pager, so the user wants it
constexpr uint32_t manager =
    XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

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

// The values of a property of atoms or cardinals; empty where there is none.
std::vector<uint32_t> Vordergrund::werte(uint32_t fenster, const char *name) const
{
    constexpr uint32_t hoechstens = 4096;
    const auto frage =
        xcb_get_property(x_, 0, fenster, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, hoechstens);
    const std::unique_ptr<xcb_get_property_reply_t, void (*)(void *)> antwort(
        xcb_get_property_reply(x_, frage, nullptr), std::free);
    if (!antwort || antwort->format != 32) {
        return {};
    }
    const auto *anfang = static_cast<const uint32_t *>(xcb_get_property_value(antwort.get()));
    return {anfang, anfang + antwort->value_len};
}

bool Vordergrund::unterstuetzt() const
{
    const auto atome = werte(wurzel_, "_NET_SUPPORTED");
    return std::find(atome.begin(), atome.end(), aktiv_) != atome.end();
}

// To the workspace that is shown: what the user asks for here is to appear here, as a window does
// that was hidden. Some window managers (openbox) would refuse to go where it is.
void Vordergrund::herbringen() const
{
    constexpr uint32_t ueberall = 0xFFFFFFFF;
    const auto hier = werte(wurzel_, "_NET_CURRENT_DESKTOP");
    const auto dort = werte(erwartet_, "_NET_WM_DESKTOP");
    if (hier.empty() || dort.empty() || dort[0] == ueberall || dort[0] == hier[0]) {
        return;
    }
    auto eine = nachricht(erwartet_, atom("_NET_WM_DESKTOP"), 32);
    eine.data.data32[0] = hier[0];
    eine.data.data32[1] = schaltleiste;
    senden(x_, wurzel_, manager, eine);
}

// One that is rolled up to its title bar is raised as it is.
void Vordergrund::ausrollen() const
{
    constexpr uint32_t entfernen = 0;
    const xcb_atom_t aufgerollt = atom("_NET_WM_STATE_SHADED");
    const auto zustaende = werte(erwartet_, "_NET_WM_STATE");
    if (std::find(zustaende.begin(), zustaende.end(), aufgerollt) == zustaende.end()) {
        return;
    }
    auto eine = nachricht(erwartet_, atom("_NET_WM_STATE"), 32);
    eine.data.data32[0] = entfernen;
    eine.data.data32[1] = aufgerollt;
    eine.data.data32[3] = schaltleiste;
    senden(x_, wurzel_, manager, eine);
}

// A request counts by the server's time, which only an event tells: touching a property brings one.
bool Vordergrund::holen(const QWindow &fenster, const QByteArray &kennung)
{
    if (x_ == nullptr || !unterstuetzt()) {
        return false;
    }
    erwartet_ = static_cast<uint32_t>(fenster.winId());
    herbringen();
    ausrollen();
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
        auto eine = nachricht(std::exchange(erwartet_, 0), aktiv_, 32);
        eine.data.data32[0] = schaltleiste;
        eine.data.data32[1] = aenderung->time;
        senden(x_, wurzel_, manager, eine);
        xcb_flush(x_);
    }
    return false;
}

} // namespace kalvaro
