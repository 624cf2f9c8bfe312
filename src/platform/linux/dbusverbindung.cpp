#include "platform/linux/dbusverbindung.h"

#include "platform/linux/laufzeitordner.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QHash>

#include <algorithm>
#include <array>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

using Angaben = QHash<QByteArray, QByteArray>;

// The keys of "transport:key=value,key=value", unescaped.
Angaben angaben(const QByteArray &eintrag)
{
    Angaben liste;
    for (const QByteArray &paar : eintrag.mid(eintrag.indexOf(':') + 1).split(',')) {
        const qsizetype gleich = paar.indexOf('=');
        if (gleich > 0) {
            liste.insert(paar.first(gleich), QByteArray::fromPercentEncoding(paar.mid(gleich + 1)));
        }
    }
    return liste;
}

// The bytes of a socket's name in the kernel's form; empty when it has none there.
QByteArray socketname(const Angaben &wo)
{
    if (wo.contains("path")) {
        return wo.value("path");
    }
    if (wo.contains("abstract")) {
        return '\0' + wo.value("abstract");
    }
    const QByteArray ordner = laufzeitordner();
    return wo.contains("runtime") && !ordner.isEmpty() ? ordner + "/bus" : QByteArray();
}

// Begins the authentication, which any bus answers whatever it thinks of us.
bool antwortet(int fd, const QByteArray &name, const QDeadlineTimer &frist)
{
    sockaddr_un ziel = {};
    if (name.isEmpty() || static_cast<size_t>(name.size()) >= sizeof ziel.sun_path) {
        return false;
    }
    ziel.sun_family = AF_UNIX;
    std::memcpy(ziel.sun_path, name.constData(), static_cast<size_t>(name.size()));
    const auto laenge =
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<size_t>(name.size()));
    // Non-blocking: a full queue of connections is no answer either.
    if (::connect(fd, reinterpret_cast<const sockaddr *>(&ziel), laenge) != 0) {
        return false;
    }
    const QByteArray anfang =
        '\0' + QByteArray("AUTH EXTERNAL ") + QByteArray::number(::getuid()).toHex() + "\r\n";
    if (::send(fd, anfang.constData(), static_cast<size_t>(anfang.size()), MSG_NOSIGNAL) !=
        anfang.size()) {
        return false;
    }
    pollfd warten = {fd, POLLIN, 0};
    char erstes = 0;
    return ::poll(&warten, 1, static_cast<int>(frist.remainingTime())) == 1 &&
           ::recv(fd, &erstes, 1, 0) == 1;
}

bool eintragAntwortet(const QByteArray &eintrag, const QDeadlineTimer &frist)
{
    if (!eintrag.startsWith("unix:")) {
        return eintrag.contains(':') && !eintrag.startsWith("disabled:");
    }
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        return false;
    }
    const bool ja = antwortet(fd, socketname(angaben(eintrag)), frist);
    ::close(fd);
    return ja;
}

} // namespace

QString sitzungsbusAdresse()
{
    QStringList eintraege =
        qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS").split(u';', Qt::SkipEmptyParts);
    if (!eintraege.isEmpty()) {
        eintraege.removeIf([](const QString &e) { return e.startsWith(u"autolaunch:"); });
        return eintraege.join(u';');
    }
    // As libdbus looks for it: the user's bus, and only when it is this user's.
    const QByteArray bus = laufzeitordner() + "/bus";
    struct stat art = {};
    const bool da = !laufzeitordner().isEmpty() && ::stat(bus.constData(), &art) == 0 &&
                    S_ISSOCK(art.st_mode) && art.st_uid == ::getuid();
    return da ? u"unix:path="_s + QString::fromLatin1(bus.toPercentEncoding("/")) : QString();
}

QString systembusAdresse()
{
    return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS",
                                u"unix:path=/run/dbus/system_bus_socket"_s);
}

bool busAntwortet(const QString &adresse, std::chrono::milliseconds frist)
{
    const QList<QByteArray> eintraege = adresse.toUtf8().split(';');
    const QDeadlineTimer bis(frist);
    return std::any_of(eintraege.begin(), eintraege.end(), [&bis](const QByteArray &eintrag) {
        return eintragAntwortet(eintrag, bis);
    });
}

void sitzungsbusFestlegen()
{
    const QString adresse = sitzungsbusAdresse();
    qputenv("DBUS_SESSION_BUS_ADDRESS",
            busAntwortet(adresse) ? adresse.toUtf8() : QByteArrayLiteral("disabled:"));
}

QDBusConnection sitzungsbus()
{
    [[maybe_unused]] static const bool einmal = (sitzungsbusFestlegen(), true);
    return QDBusConnection::sessionBus();
}

QDBusMessage anDenBus(const QString &methode, const QVariantList &argumente)
{
    QDBusMessage ruf = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, methode);
    ruf.setArguments(argumente);
    return ruf;
}

} // namespace kalvaro
