#include "platform/linux/dbusverbindung.h"

#include "platform/linux/laufzeitordner.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QHash>

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

// What a client sends first, in one piece as sd-bus does: who it is, and the call that every
// connection begins with ("D-Bus Specification" 0.38, "Authentication Protocol", "Message Format").
QByteArray begruessung()
{
    const auto laenge = [](qsizetype bytes) {
        return QByteArray(1, static_cast<char>(bytes)) + QByteArray(3, '\0');
    };
    const auto feld = [&laenge](char nummer, char art, const QByteArray &wert) {
        return QByteArray(1, nummer) + '\1' + art + '\0' + laenge(wert.size()) + wert + '\0';
    };
    const auto auffuellen = [](const QByteArray &bytes) {
        return bytes.leftJustified((bytes.size() + 7) / 8 * 8, '\0');
    };
    const QByteArray bus("org.freedesktop.DBus");
    const QByteArray felder = auffuellen(feld(1, 'o', "/org/freedesktop/DBus")) +
                              auffuellen(feld(2, 's', bus)) + auffuellen(feld(3, 's', "Hello")) +
                              feld(6, 's', bus);
    // Little end first, a call, without a body, number 1.
    const QByteArray kopf("l\1\0\1\0\0\0\0\1\0\0\0", 12);
    return '\0' + QByteArray("AUTH EXTERNAL ") + QByteArray::number(::getuid()).toHex() +
           "\r\nBEGIN\r\n" + kopf + laenge(felder.size()) + auffuellen(felder);
}

enum class Empfang { Unvollstaendig, Willkommen, Anders };

// What a bus has said so far: one line to the authentication, and then the return of the call.
Empfang bewertet(const QByteArray &gesagt)
{
    constexpr qsizetype laengsteZeile = 4096;
    const qsizetype zeile = gesagt.indexOf("\r\n");
    if (zeile < 0) {
        return gesagt.size() < laengsteZeile ? Empfang::Unvollstaendig : Empfang::Anders;
    }
    if (!gesagt.startsWith("OK ")) {
        return Empfang::Anders;
    }
    const QByteArray nachricht = gesagt.mid(zeile + 2);
    if (nachricht.size() < 2) {
        return Empfang::Unvollstaendig;
    }
    constexpr char rueckgabe = 2;
    return nachricht[1] == rueckgabe ? Empfang::Willkommen : Empfang::Anders;
}

// Whether the whole beginning succeeds, which takes more than something that listens.
bool empfaengt(int fd, const QByteArray &name, const QDeadlineTimer &frist)
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
    const QByteArray gruss = begruessung();
    if (::connect(fd, reinterpret_cast<const sockaddr *>(&ziel), laenge) != 0 ||
        ::send(fd, gruss.constData(), static_cast<size_t>(gruss.size()), MSG_NOSIGNAL) !=
            gruss.size()) {
        return false;
    }
    QByteArray gesagt;
    while (bewertet(gesagt) == Empfang::Unvollstaendig) {
        pollfd warten = {fd, POLLIN, 0};
        std::array<char, 512> stueck = {};
        if (::poll(&warten, 1, static_cast<int>(frist.remainingTime())) != 1) {
            return false;
        }
        const ssize_t bytes = ::recv(fd, stueck.data(), stueck.size(), 0);
        if (bytes <= 0) {
            return false;
        }
        gesagt.append(stueck.data(), bytes);
    }
    return bewertet(gesagt) == Empfang::Willkommen;
}

bool eintragAntwortet(const QByteArray &eintrag, const QDeadlineTimer &frist)
{
    if (!eintrag.startsWith("unix:")) {
        return false;
    }
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        return false;
    }
    const bool ja = empfaengt(fd, socketname(angaben(eintrag)), frist);
    ::close(fd);
    return ja;
}

// The first of the addresses where a bus answers; empty when none does. Each gets its share of
// `frist`, so that one that hangs does not stand in the way of the next.
QByteArray antwortende(const QString &adressen, std::chrono::milliseconds frist)
{
    const QList<QByteArray> eintraege = adressen.toUtf8().split(';');
    for (const QByteArray &eintrag : eintraege) {
        if (eintragAntwortet(eintrag, QDeadlineTimer(frist / eintraege.size()))) {
            return eintrag;
        }
    }
    return {};
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
    return !antwortende(adresse, frist).isEmpty();
}

void sitzungsbusFestlegen()
{
    const QByteArray adresse = antwortende(sitzungsbusAdresse(), busfrist);
    qputenv("DBUS_SESSION_BUS_ADDRESS",
            adresse.isEmpty() ? QByteArrayLiteral("disabled:") : adresse);
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
