#include "platform/linux/sicherungsreste.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// A write lease is only given on a file that nobody else has open, fcntl(2). A process that opens
// the file while it lasts is made to wait, and we are told by a signal, one here that is ignored.
bool unbenutzt(int fd, const struct stat &art)
{
    constexpr time_t altGenug = 3600; // seconds
    if (::fcntl(fd, F_SETSIG, SIGURG) == 0 && ::fcntl(fd, F_SETLEASE, F_WRLCK) == 0) {
        return true;
    }
    return errno != EAGAIN && std::time(nullptr) - art.st_mtime > altGenug;
}

void restEntfernen(const QByteArray &pfad)
{
    const int fd =
        ::open(pfad.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        return;
    }
    struct stat art = {};
    if (::fstat(fd, &art) == 0 && S_ISREG(art.st_mode) && art.st_uid == ::geteuid() &&
        unbenutzt(fd, art)) {
        ::unlink(pfad.constData());
    }
    ::close(fd); // and the lease with it
}

} // namespace

void sicherungsresteEntfernen(const QString &datei)
{
    const QFileInfo ziel(datei);
    const QRegularExpression name(
        u"\\A%1\\.[A-Za-z]{6}\\z"_s.arg(QRegularExpression::escape(ziel.fileName())));
    const QDir ordner(ziel.path());
    const QStringList namen = ordner.entryList({ziel.fileName() + u".??????"_s},
                                               QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &einer : namen) {
        if (name.match(einer).hasMatch()) {
            restEntfernen(QFile::encodeName(ordner.filePath(einer)));
        }
    }
}

} // namespace kalvaro
