#include "e2e/xeinstellungen.h"

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

// Little end first.
QByteArray zahl(qsizetype wert, int bytes)
{
    QByteArray folge;
    for (int i = 0; i < bytes; ++i) {
        folge += static_cast<char>(wert >> 8 * i & 0xff);
    }
    return folge;
}

QByteArray aufgefuellt(const QByteArray &text)
{
    return text.leftJustified((text.size() + 3) / 4 * 4, '\0');
}

// Waits until the server has done what it was sent.
void abwarten(xcb_connection_t *x)
{
    std::free(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
}

} // namespace

XEinstellungen::XEinstellungen(const QString &anzeige, const QByteArray &thema)
    : x_(xcb_connect(anzeige.toLatin1().constData(), nullptr))
{
    if (xcb_connection_has_error(x_) != 0) {
        qFatal("The settings manager finds no display");
    }
    const xcb_screen_t *schirm = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
    fenster_ = xcb_generate_id(x_);
    xcb_create_window(x_, XCB_COPY_FROM_PARENT, fenster_, schirm->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, schirm->root_visual, 0, nullptr);
    themaSetzen(thema);
    const xcb_atom_t auswahl = atom(x_, "_XSETTINGS_S0");
    xcb_set_selection_owner(x_, fenster_, auswahl, XCB_CURRENT_TIME);
    xcb_client_message_event_t ansage = {};
    ansage.response_type = XCB_CLIENT_MESSAGE;
    ansage.format = 32;
    ansage.window = schirm->root;
    ansage.type = atom(x_, "MANAGER");
    ansage.data.data32[1] = auswahl;
    ansage.data.data32[2] = fenster_;
    xcb_send_event(x_, 0, schirm->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&ansage));
    abwarten(x_);
}

XEinstellungen::~XEinstellungen()
{
    xcb_disconnect(x_);
}

void XEinstellungen::themaSetzen(const QByteArray &thema)
{
    const QByteArray name("Net/ThemeName");
    const QByteArray alles = zahl(0, 4) + zahl(1, 4) + zahl(1, 4) + // byte order, serial, count
                             zahl(1, 2) + zahl(name.size(), 2) + aufgefuellt(name) + zahl(1, 4) +
                             zahl(thema.size(), 4) + aufgefuellt(thema);
    const xcb_atom_t eigenschaft = atom(x_, "_XSETTINGS_SETTINGS");
    xcb_change_property(x_, XCB_PROP_MODE_REPLACE, fenster_, eigenschaft, eigenschaft, 8,
                        static_cast<uint32_t>(alles.size()), alles.constData());
    abwarten(x_);
}

} // namespace kalvaro
