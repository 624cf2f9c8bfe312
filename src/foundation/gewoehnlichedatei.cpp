#include "foundation/gewoehnlichedatei.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kalvaro {

namespace {

constexpr int nichtWarten = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// A descriptor that closes itself.
class Griff
{
public:
    explicit Griff(int fd)
        : fd_(fd)
    {
    }
    ~Griff()
    {
        if (fd_ >= 0) {
            ::close(fd_);
        }
    }
    Griff(const Griff &) = delete;
    Griff &operator=(const Griff &) = delete;

    [[nodiscard]] int fd() const { return fd_; }
    [[nodiscard]] bool gewoehnlich() const
    {
        struct stat art = {};
        return ::fstat(fd_, &art) == 0 && S_ISREG(art.st_mode);
    }

private:
    const int fd_;
};

Dateimangel mangel(int fehler, const QByteArray &name)
{
    struct stat art = {};
    if (::stat(name.constData(), &art) == 0 && !S_ISREG(art.st_mode)) {
        return Dateimangel::KeineDatei;
    }
    switch (fehler) {
    case ENOENT:
    case ENOTDIR:
        return Dateimangel::Fehlt;
    case ELOOP:
        return Dateimangel::ImKreis;
    case EACCES:
    case EPERM:
        return Dateimangel::Rechte;
    default:
        return Dateimangel::Verschlossen;
    }
}

} // namespace

tl::expected<QByteArray, Dateimangel> gewoehnlichLesen(const QString &pfad, qint64 hoechstens)
{
    const QByteArray name = QFile::encodeName(pfad);
    const Griff griff(::open(name.constData(), O_RDONLY | nichtWarten));
    if (griff.fd() < 0) {
        return tl::unexpected(mangel(errno, name));
    }
    if (!griff.gewoehnlich()) {
        return tl::unexpected(Dateimangel::KeineDatei);
    }
    QFile datei;
    if (!datei.open(griff.fd(), QIODevice::ReadOnly)) {
        return tl::unexpected(Dateimangel::Verschlossen);
    }
    // Not the size is asked but what there is: the file may grow meanwhile.
    QByteArray inhalt = datei.read(hoechstens + 1);
    if (datei.error() != QFile::NoError) {
        return tl::unexpected(Dateimangel::Unlesbar);
    }
    if (inhalt.size() > hoechstens) {
        return tl::unexpected(Dateimangel::ZuGross);
    }
    return inhalt;
}

bool gewoehnlichErgaenzen(const QString &pfad, const QByteArray &bytes)
{
    constexpr mode_t rechte = 0666;
    const Griff griff(::open(QFile::encodeName(pfad).constData(),
                             O_WRONLY | O_APPEND | O_CREAT | nichtWarten, rechte));
    if (griff.fd() < 0 || !griff.gewoehnlich()) {
        return false;
    }
    ssize_t geschrieben = -1;
    do {
        geschrieben = ::write(griff.fd(), bytes.constData(), static_cast<size_t>(bytes.size()));
    } while (geschrieben < 0 && errno == EINTR);
    return geschrieben == bytes.size();
}

} // namespace kalvaro
