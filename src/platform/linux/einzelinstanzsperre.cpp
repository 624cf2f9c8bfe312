#include "platform/linux/einzelinstanzsperre.h"

#include "foundation/konstanten.h"

#include <QDir>
#include <QFile>
#include <QTimer>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// Guests bring their message along; who does not has nothing to say. None of ours waits longer than
// three seconds for an answer.
constexpr std::size_t meisteGaeste = 64;
constexpr std::chrono::seconds laengsterBesuch{5};
constexpr std::chrono::milliseconds volleZeit{100};

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
    return ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

} // namespace

Einzelinstanzsperre::Einzelinstanzsperre(const QString &ordner,
                                         std::function<bool(const QByteArray &)> angekommen)
    : ordner_(QFile::encodeName(ordner))
    , angekommen_(std::move(angekommen))
{
    QDir().mkpath(ordner);
}

Einzelinstanzsperre::~Einzelinstanzsperre()
{
    horcher_.reset();
    while (!gaeste_.empty()) {
        verabschieden(gaeste_.begin()->first);
    }
    if (tuer_ >= 0) {
        ::unlink((ordner_ + '/' + KENNUNG.toUtf8() + ".socket").constData());
        ::close(tuer_);
    }
    if (sperre_ >= 0) {
        ::close(sperre_);
    }
}

Einzelinstanzsperre::Stand Einzelinstanzsperre::nehmen()
{
    // The file stays for good: removing it would let two processes lock two files of one name.
    const QByteArray datei = ordner_ + '/' + KENNUNG.toUtf8() + ".lock";
    constexpr int wie = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    int fd = ::open(datei.constData(), O_RDWR | O_CREAT | wie, 0600);
    if (fd < 0) { // a folder that can only be read since may hold one from before
        fd = ::open(datei.constData(), O_RDONLY | wie);
    }
    struct stat art = {};
    if (fd < 0 || ::fstat(fd, &art) != 0 || !S_ISREG(art.st_mode)) {
        ::close(fd);
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
    constexpr int schlange = 1024; // starts that may wait until the event loop runs
    tuer_ = neuerSocket();
    ::unlink((ordner_ + '/' + KENNUNG.toUtf8() + ".socket").constData());
    const mode_t maske = ::umask(0077); // nobody but the user may write into it
    const bool offen =
        tuer_ >= 0 && mitAdresse(ordner_, [this](const sockaddr *adresse, socklen_t laenge) {
            return ::bind(tuer_, adresse, laenge);
        });
    ::umask(maske);
    if (offen && ::listen(tuer_, schlange) == 0) {
        horcher_ = std::make_unique<QSocketNotifier>(tuer_, QSocketNotifier::Read);
        connect(horcher_.get(), &QSocketNotifier::activated, this, &Einzelinstanzsperre::annehmen);
    }
}

void Einzelinstanzsperre::ruhen(bool ja)
{
    ruht_ = ja;
    if (horcher_) {
        horcher_->setEnabled(!ja);
    }
    for (const auto &[fd, gast] : gaeste_) {
        gast->setEnabled(!ja);
    }
}

Einzelinstanzsperre::Antwort Einzelinstanzsperre::fragen(const QByteArray &nachricht,
                                                         const QDeadlineTimer &bis) const
{
    const int fd = neuerSocket();
    const auto laenge = static_cast<size_t>(nachricht.size());
    const bool gesendet =
        fd >= 0 &&
        mitAdresse(ordner_, [&](const sockaddr *adresse,
                                socklen_t groesse) { return ::connect(fd, adresse, groesse); }) &&
        ::send(fd, nachricht.constData(), laenge, MSG_NOSIGNAL) >= 0;
    Antwort antwort = Antwort::Niemand;
    if (gesendet) {
        pollfd warten = {fd, POLLIN, 0};
        int bereit = -1;
        do {
            bereit = ::poll(&warten, 1, static_cast<int>(bis.remainingTime()));
        } while (bereit < 0 && errno == EINTR);
        char zusage = 0;
        antwort = bereit == 0                                    ? Antwort::Stumm
                  : bereit > 0 && ::recv(fd, &zusage, 1, 0) == 1 ? Antwort::Angenommen
                                                                 : Antwort::Niemand;
    }
    ::close(fd);
    return antwort;
}

void Einzelinstanzsperre::annehmen()
{
    while (gaeste_.size() < meisteGaeste) {
        const int fd = ::accept4(tuer_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0) {
            if (errno == EMFILE || errno == ENFILE) {
                break;
            }
            return;
        }
        auto gast = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
        connect(gast.get(), &QSocketNotifier::activated, this, [this, fd] { lesen(fd); });
        QTimer::singleShot(laengsterBesuch, gast.get(), [this, fd] { verabschieden(fd); });
        gaeste_.emplace(fd, std::move(gast));
    }
    // There is no room, and who waits at the door would be told of without end.
    horcher_->setEnabled(false);
    QTimer::singleShot(volleZeit, horcher_.get(), [this] { horcher_->setEnabled(!ruht_); });
}

void Einzelinstanzsperre::lesen(int gast)
{
    QByteArray nachricht(qsizetype(groessteNachricht), Qt::Uninitialized);
    const ssize_t laenge = ::recv(gast, nachricht.data(), groessteNachricht, 0);
    if (laenge > 0) {
        nachricht.truncate(laenge);
        if (angekommen_(nachricht)) {
            const char zusage = 1;
            ::send(gast, &zusage, 1, MSG_NOSIGNAL);
        } else {
            ruhen(true);
        }
    }
    verabschieden(gast);
}

// It may be the notifier that is just calling.
void Einzelinstanzsperre::verabschieden(int gast)
{
    auto wer = gaeste_.extract(gast);
    wer.mapped()->setEnabled(false);
    wer.mapped().release()->deleteLater();
    ::close(gast);
}

} // namespace kalvaro
