#include "platform/macos/resteentfernen.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <unistd.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

void resteEntfernen(const QString &datei, const QDateTime &jetzt)
{
    constexpr qint64 stunde = 3600; // seconds
    const QFileInfo ziel(datei);
    const QRegularExpression rest(QRegularExpression::anchoredPattern(
        u"%1\\.[A-Za-z]{6}"_s.arg(QRegularExpression::escape(ziel.fileName()))));
    const QDir ordner(ziel.path());
    for (const auto liste = ordner.entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
         const QFileInfo &eine : liste) {
        if (rest.match(eine.fileName()).hasMatch() && eine.ownerId() == ::getuid() &&
            eine.lastModified().secsTo(jetzt) >= stunde) {
            QFile::remove(eine.filePath());
        }
    }
}

} // namespace kalvaro
