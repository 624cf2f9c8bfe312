#include "e2e/leiste.h"

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace kalvaro {

namespace {

xcb_atom_t atom(xcb_connection_t *x, const char *name)
{
    const auto frage = xcb_intern_atom(x, 0, static_cast<uint16_t>(std::strlen(name)), name);
    xcb_intern_atom_reply_t *antwort = xcb_intern_atom_reply(x, frage, nullptr);
    const xcb_atom_t eines = antwort != nullptr ? antwort->atom : xcb_atom_t{0};
    std::free(antwort);
    return eines;
}

uint32_t anteil(int wert)
{
    return static_cast<uint32_t>(wert) << 8U | 0x5AU; // 16 bits, of which the upper 8 count
}

} // namespace

Leiste::Leiste(const QString &anzeige, const std::optional<QColor> &schrift, Ansage ansage)
    : x_(xcb_connect(anzeige.toLatin1().constData(), nullptr))
{
    if (xcb_connection_has_error(x_) != 0) {
        qFatal("The panel finds no display");
    }
    fensterAnlegen();
    if (schrift) {
        // The colours of text, error, warning and success, red, green and blue of each.
        std::vector<uint32_t> farben(12);
        farben[0] = anteil(schrift->red());
        farben[1] = anteil(schrift->green());
        farben[2] = anteil(schrift->blue());
        setzen("_NET_SYSTEM_TRAY_COLORS", XCB_ATOM_CARDINAL, farben);
    }
    ansagen(ansage);
}

Leiste::~Leiste()
{
    xcb_disconnect(x_);
}

void Leiste::fensterAnlegen()
{
    const xcb_screen_t *schirm = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
    fenster_ = xcb_generate_id(x_);
    xcb_create_window(x_, XCB_COPY_FROM_PARENT, fenster_, schirm->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, schirm->root_visual, 0, nullptr);
    xcb_set_selection_owner(x_, fenster_, atom(x_, "_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
}

void Leiste::setzen(const char *name, uint32_t art, const std::vector<uint32_t> &werte,
                    uint8_t format) const
{
    xcb_change_property(x_, XCB_PROP_MODE_REPLACE, fenster_, atom(x_, name), art, format,
                        static_cast<uint32_t>(werte.size()), werte.data());
}

void Leiste::ansagen(Ansage ansage) const
{
    const xcb_atom_t auswahl = atom(x_, "_NET_SYSTEM_TRAY_S0");
    const xcb_window_t wurzel = xcb_setup_roots_iterator(xcb_get_setup(x_)).data->root;
    xcb_client_message_event_t nachricht = {};
    nachricht.response_type = XCB_CLIENT_MESSAGE;
    nachricht.format = 32;
    nachricht.window = wurzel;
    nachricht.type = atom(x_, ansage == Ansage::FalscheNachricht ? "WM_PROTOCOLS" : "MANAGER");
    nachricht.data.data32[1] =
        ansage == Ansage::FalscheAuswahl ? atom(x_, "_NET_SYSTEM_TRAY_S1") : auswahl;
    nachricht.data.data32[2] = fenster_;
    if (ansage != Ansage::Keine) {
        xcb_send_event(x_, 0, wurzel, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&nachricht));
    }
    // Asks for something, so that all of it has happened when this returns.
    std::free(xcb_get_selection_owner_reply(x_, xcb_get_selection_owner(x_, auswahl), nullptr));
}

void Leiste::fensterWechseln(bool altesBleibt)
{
    const xcb_window_t altes = fenster_;
    fensterAnlegen();
    if (!altesBleibt) {
        xcb_destroy_window(x_, altes);
    }
    ansagen(Ansage::Richtig);
}

int Leiste::bitten() const
{
    const xcb_atom_t bitte = atom(x_, "_NET_SYSTEM_TRAY_OPCODE");
    int anzahl = 0;
    while (xcb_generic_event_t *ereignis = xcb_poll_for_event(x_)) {
        const auto *nachricht = reinterpret_cast<const xcb_client_message_event_t *>(ereignis);
        const bool eine = (ereignis->response_type & 0x7FU) == XCB_CLIENT_MESSAGE &&
                          nachricht->type == bitte && nachricht->data.data32[1] == 0;
        anzahl += eine ? 1 : 0;
        std::free(ereignis);
    }
    return anzahl;
}

namespace {

// Asks the window manager, as a task bar does.
void bitten(const QString &anzeige, uint32_t fenster, const char *was,
            const char *zustand = nullptr)
{
    xcb_connection_t *const x = xcb_connect(anzeige.toLatin1().constData(), nullptr);
    const xcb_window_t wurzel = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    xcb_client_message_event_t nachricht = {};
    nachricht.response_type = XCB_CLIENT_MESSAGE;
    nachricht.format = 32;
    nachricht.window = fenster;
    nachricht.type = atom(x, was);
    if (zustand != nullptr) {
        nachricht.data.data32[0] = 1; // add
        nachricht.data.data32[1] = atom(x, zustand);
    }
    xcb_send_event(x, 0, wurzel,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&nachricht));
    std::free(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr)); // so it has arrived
    xcb_disconnect(x);
}

} // namespace

void aufrollen(const QString &anzeige, uint32_t fenster)
{
    bitten(anzeige, fenster, "_NET_WM_STATE", "_NET_WM_STATE_SHADED");
}

void schliessen(const QString &anzeige, uint32_t fenster)
{
    bitten(anzeige, fenster, "_NET_CLOSE_WINDOW");
}

} // namespace kalvaro
