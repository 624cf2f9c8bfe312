#include "platform/linux/einzelinstanzsperre.h"

#include "foundation/konstanten.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t groessteNachricht = 64UL * 1024;

// Calls `tun` with the address of the socket `name` in `ordner`. The folder's path may be longer
// than an address holds, so it goes by its descriptor.
template<typename Tun>
bool mitAdresse(const QByteArray &ordner, Tun tun)
{
    const int fd = ::open(ordner.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    const QByteArray name =
        "/proc/self/fd/" + QByteArray::number(fd) + '/' + KENNUNG.toUtf8() + ".socket";
    sockaddr_un adresse = {};
    adresse.sun_family = AF_UNIX;
    std::memcpy(adresse.sun_path, name.constData(), static_cast<size_t>(name.size()));
    const bool gelungen =
        tun(reinterpret_cast<const sockaddr *>(&adresse), socklen_t(sizeof adresse)) >= 0;
    ::close(fd);
    return gelungen;
}

int neuerSocket()
{
    return ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

} // namespace

Einzelinstanzsperre::Einzelinstanzsperre(const QString &ordner,
                                         std::function<void(const QByteArray &)> angekommen)
    : ordner_(QFile::encodeName(ordner))
    , angekommen_(std::move(angekommen))
{
    QDir().mkpath(ordner);
}

Einzelinstanzsperre::~Einzelinstanzsperre()
{
    horcher_.reset();
    if (briefkasten_ >= 0) {
        ::unlink((ordner_ + '/' + KENNUNG.toUtf8() + ".socket").constData());
        ::close(briefkasten_);
    }
    if (sperre_ >= 0) {
        ::close(sperre_);
    }
}

Einzelinstanzsperre::Stand Einzelinstanzsperre::nehmen()
{
    // The file stays for good: removing it would let two processes lock two files of one name.
    const QByteArray datei = ordner_ + '/' + KENNUNG.toUtf8() + ".lock";
    const int fd = ::open(datei.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0) {
        return Stand::Unmoeglich;
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool vergeben = errno == EWOULDBLOCK;
        ::close(fd);
        return vergeben ? Stand::Vergeben : Stand::Unmoeglich;
    }
    sperre_ = fd;
    horchen();
    return Stand::Gehalten;
}

void Einzelinstanzsperre::horchen()
{
    briefkasten_ = neuerSocket();
    ::unlink((ordner_ + '/' + KENNUNG.toUtf8() + ".socket").constData());
    const mode_t maske = ::umask(0077); // nobody but the user may write into it
    const bool offen =
        briefkasten_ >= 0 && mitAdresse(ordner_, [this](const sockaddr *adresse, socklen_t laenge) {
            return ::bind(briefkasten_, adresse, laenge);
        });
    ::umask(maske);
    if (offen) {
        horcher_ = std::make_unique<QSocketNotifier>(briefkasten_, QSocketNotifier::Read);
        connect(horcher_.get(), &QSocketNotifier::activated, this, &Einzelinstanzsperre::lesen);
    }
}

bool Einzelinstanzsperre::senden(const QByteArray &nachricht) const
{
    const int fd = neuerSocket();
    const auto laenge = static_cast<size_t>(nachricht.size());
    const bool gesendet =
        fd >= 0 && mitAdresse(ordner_, [&](const sockaddr *adresse, socklen_t groesse) {
            return ::sendto(fd, nachricht.constData(), laenge, MSG_NOSIGNAL, adresse, groesse);
        });
    ::close(fd);
    return gesendet;
}

void Einzelinstanzsperre::lesen()
{
    QByteArray nachricht(qsizetype(groessteNachricht), Qt::Uninitialized);
    const ssize_t laenge = ::recv(briefkasten_, nachricht.data(), groessteNachricht, 0);
    if (laenge >= 0) {
        nachricht.truncate(laenge);
        angekommen_(nachricht);
    }
}

} // namespace kalvaro
