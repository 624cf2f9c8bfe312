#include "e2e/leiste.h"

#include <array>
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
    return static_cast<uint32_t>(wert) * 0x101U; // 8 bits as 16
}

} // namespace

Leiste::Leiste(const QString &anzeige, const std::optional<QColor> &schrift)
    : x_(xcb_connect(anzeige.toLatin1().constData(), nullptr))
{
    if (xcb_connection_has_error(x_) != 0) {
        qFatal("The panel finds no display");
    }
    const xcb_window_t fenster = xcb_generate_id(x_);
    const xcb_screen_t *schirm = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
    xcb_create_window(x_, XCB_COPY_FROM_PARENT, fenster, schirm->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, schirm->root_visual, 0, nullptr);
    if (schrift) {
        // The colours of text, error, warning and success, red, green and blue of each.
        std::array<uint32_t, 12> farben{};
        farben[0] = anteil(schrift->red());
        farben[1] = anteil(schrift->green());
        farben[2] = anteil(schrift->blue());
        xcb_change_property(x_, XCB_PROP_MODE_REPLACE, fenster, atom(x_, "_NET_SYSTEM_TRAY_COLORS"),
                            XCB_ATOM_CARDINAL, 32, farben.size(), farben.data());
    }
    const xcb_atom_t auswahl = atom(x_, "_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(x_, fenster, auswahl, XCB_CURRENT_TIME);
    // Asks for something, so that all of it has happened when this returns.
    std::free(xcb_get_selection_owner_reply(x_, xcb_get_selection_owner(x_, auswahl), nullptr));
}

Leiste::~Leiste()
{
    xcb_disconnect(x_);
}

} // namespace kalvaro
