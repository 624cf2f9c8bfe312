#include "platform/buendel.h"

#include "platform/plist.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 groessteDatei = 1 << 20;

std::optional<QByteArray> gewoehnlicheDatei(const QString &name)
{
    // Without O_NONBLOCK the open itself would wait for a pipe's writer.
    const int fd =
        ::open(QFile::encodeName(name).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    QFile datei;
    struct stat art = {};
    if (fd < 0 || !datei.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) ||
        ::fstat(fd, &art) != 0 || !S_ISREG(art.st_mode)) {
        return {};
    }
    const QByteArray inhalt = datei.read(groessteDatei + 1);
    return inhalt.size() > groessteDatei ? std::nullopt : std::optional(inhalt);
}

} // namespace

QString infodatei(const QString &buendel)
{
    return buendel + u"/Contents/Info.plist"_s;
}

std::optional<QString> infotext(const QString &buendel, QStringView schluessel)
{
    const auto inhalt = gewoehnlicheDatei(infodatei(buendel));
    return inhalt ? plistText(*inhalt, schluessel) : std::nullopt;
}

} // namespace kalvaro
