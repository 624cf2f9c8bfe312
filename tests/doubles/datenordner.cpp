#include "doubles/datenordner.h"

#include "foundation/datenordner.h"

#include <QDir>
#include <QFile>

namespace kalvaro {

using namespace Qt::StringLiterals;

Datenordner::Datenordner()
{
    qputenv("XDG_DATA_HOME", ordner.path().toLocal8Bit());
    if (appOrdner() != ordner.path() + u"/kalvaro"_s) {
        qFatal("The data folder was asked for before the test set its own");
    }
    leeren();
}

void Datenordner::leeren() const
{
    QDir(appOrdner()).removeRecursively();
    ordnerAnlegen();
}

void Datenordner::schreiben(const QString &name, const QByteArray &inhalt) const
{
    QFile ziel(datei(name));
    if (!ziel.open(QIODevice::WriteOnly) || ziel.write(inhalt) != inhalt.size()) {
        qFatal("Cannot write into the test's data folder");
    }
}

QByteArray Datenordner::inhalt(const QString &name) const
{
    QFile quelle(datei(name));
    return quelle.open(QIODevice::ReadOnly) ? quelle.readAll() : QByteArray();
}

QStringList Datenordner::protokollzeilen() const
{
    constexpr qsizetype stempel = 21; // "yyyy-MM-dd HH:mm:ss" and two blanks
    QStringList zeilen =
        QString::fromUtf8(inhalt(u"kalvaro.log"_s)).split(u'\n', Qt::SkipEmptyParts);
    for (QString &zeile : zeilen) {
        zeile.remove(0, stempel);
    }
    return zeilen;
}

} // namespace kalvaro
