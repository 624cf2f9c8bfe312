#include "platform/linux/sicherungsreste.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
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

bool nurBuchstaben(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar zeichen) {
        return (zeichen >= u'A' && zeichen <= u'Z') || (zeichen >= u'a' && zeichen <= u'z');
    });
}

} // namespace

void sicherungsresteEntfernen(const QString &datei)
{
    const QFileInfo ziel(datei);
    const QDir ordner(ziel.path());
    const QString anfang = ziel.fileName() + u'.';
    constexpr qsizetype zufall = 6; // letters
    // Without a pattern, which would be the only thing in a start that a regular expression is for.
    const QStringList namen = ordner.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &einer : namen) {
        if (einer.startsWith(anfang) && einer.size() == anfang.size() + zufall &&
            nurBuchstaben(einer.last(zufall))) {
            restEntfernen(QFile::encodeName(ordner.filePath(einer)));
        }
    }
}

} // namespace kalvaro
