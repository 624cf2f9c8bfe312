#include "platform/linux/anzeigewahl.h"

#include "platform/linux/laufzeitordner.h"

#include "foundation/klartext.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype laengsterName = 200;

// The platforms asked for, in order: "wayland;xcb:option".
QStringList plattformen(const QString &angabe)
{
    QStringList namen = angabe.split(u';', Qt::SkipEmptyParts);
    for (QString &name : namen) {
        name = name.section(u':', 0, 0);
    }
    return namen;
}

QString mangel(const Anzeigeangaben &angaben)
{
    const QString x11 = u"„%1“ (DISPLAY)"_s.arg(klartext(angaben.x11, laengsterName));
    const QString wayland =
        u"„%1“ (WAYLAND_DISPLAY)"_s.arg(klartext(angaben.wayland, laengsterName));
    if (angaben.x11.isEmpty() && angaben.wayland.isEmpty()) {
        return u"Weder DISPLAY noch WAYLAND_DISPLAY ist gesetzt."_s;
    }
    if (angaben.wayland.isEmpty()) {
        return u"Die Anzeige "_s + x11 + u" antwortet nicht."_s;
    }
    if (angaben.x11.isEmpty()) {
        return u"Die Anzeige "_s + wayland + u" antwortet nicht."_s;
    }
    return u"Die Anzeigen "_s + x11 + u" und "_s + wayland + u" antworten nicht."_s;
}

} // namespace

Anzeigeangaben Anzeigeangaben::derUmgebung(const QString &plattform)
{
    return {.plattform = plattform.isEmpty() ? qEnvironmentVariable("QT_QPA_PLATFORM") : plattform,
            .x11 = qEnvironmentVariable("DISPLAY"),
            .wayland = qEnvironmentVariable("WAYLAND_DISPLAY")};
}

Anzeigewahl anzeigeWaehlen(const Anzeigeangaben &angaben, const std::function<bool()> &x11Antwortet,
                           const std::function<bool()> &waylandAntwortet)
{
    const QStringList namen = plattformen(angaben.plattform);
    const bool bekannt = std::all_of(namen.begin(), namen.end(), [](const QString &name) {
        return name == u"xcb" || name.startsWith(u"wayland");
    });
    if (!bekannt) {
        return {};
    }
    const bool mitX11 = namen.isEmpty() || namen.contains(u"xcb"_s);
    const bool mitWayland = namen.isEmpty() || namen != QStringList{u"xcb"_s};
    if (mitWayland && !angaben.wayland.isEmpty() && waylandAntwortet()) {
        return {};
    }
    if (mitX11 && !angaben.x11.isEmpty() && x11Antwortet()) {
        // In a session of Wayland the toolkit would try that first.
        const bool irrefuehrend = namen.isEmpty() && !angaben.wayland.isEmpty();
        return {.plattform = irrefuehrend ? u"xcb"_s : QString()};
    }
    return {.plattform = u"offscreen"_s, .mangel = mangel(angaben)};
}

bool waylandAntwortet(const QString &name)
{
    const QByteArray ordner = laufzeitordner();
    if (name.isEmpty() || (ordner.isEmpty() && !name.startsWith(u'/'))) {
        return false;
    }
    const QByteArray pfad =
        name.startsWith(u'/') ? QFile::encodeName(name) : ordner + '/' + QFile::encodeName(name);
    sockaddr_un ziel = {};
    if (static_cast<size_t>(pfad.size()) >= sizeof ziel.sun_path) {
        return false;
    }
    ziel.sun_family = AF_UNIX;
    std::memcpy(ziel.sun_path, pfad.constData(), static_cast<size_t>(pfad.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        return false;
    }
    const bool ja = ::connect(fd, reinterpret_cast<const sockaddr *>(&ziel), sizeof ziel) == 0;
    ::close(fd);
    return ja;
}

} // namespace kalvaro
