#pragma once

#include <QByteArray>
#include <QString>

struct xcb_connection_t;

namespace kalvaro {

// A settings manager as the desktops of the GTK family have one ("XSETTINGS" 0.5): announces
// itself, and tells programs the theme. Ends with this object.
class XEinstellungen
{
public:
    XEinstellungen(const QString &anzeige, const QByteArray &thema);
    ~XEinstellungen();
    XEinstellungen(const XEinstellungen &) = delete;
    XEinstellungen &operator=(const XEinstellungen &) = delete;

    void themaSetzen(const QByteArray &thema);

private:
    xcb_connection_t *const x_;
    uint32_t fenster_ = 0;
};

} // namespace kalvaro
