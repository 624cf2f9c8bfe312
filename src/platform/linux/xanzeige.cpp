#include "platform/linux/xanzeige.h"

#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <xcb/xcb.h>

namespace kalvaro {

namespace {

template<typename Antwort>
std::unique_ptr<Antwort, void (*)(void *)> gelesen(Antwort *antwort)
{
    return {antwort, std::free};
}

bool hatTray(xcb_connection_t *x, int schirm)
{
    const QByteArray auswahl = "_NET_SYSTEM_TRAY_S" + QByteArray::number(schirm);
    const auto atom = gelesen(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<uint16_t>(auswahl.size()), auswahl.constData()),
        nullptr));
    if (!atom) {
        return false;
    }
    const auto besitzer =
        gelesen(xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, atom->atom), nullptr));
    return besitzer && besitzer->owner != XCB_NONE;
}

XAnzeige fragen(const QByteArray &name)
{
    int schirm = 0;
    const std::shared_ptr<xcb_connection_t> x(xcb_connect(name.constData(), &schirm),
                                              xcb_disconnect);
    if (xcb_connection_has_error(x.get()) != 0) {
        return {};
    }
    return {.antwortet = true, .tray = hatTray(x.get(), schirm), .verbindung = x};
}

} // namespace

XAnzeige xAnzeigeFragen(const QByteArray &name, std::chrono::milliseconds frist)
{
    if (name.isEmpty()) {
        return {};
    }
    std::packaged_task<XAnzeige()> frage([name] { return fragen(name); });
    std::future<XAnzeige> antwort = frage.get_future();
    std::thread(std::move(frage)).detach();
    return antwort.wait_for(frist) == std::future_status::ready ? antwort.get() : XAnzeige{};
}

} // namespace kalvaro
