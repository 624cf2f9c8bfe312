#include "doubles/dateien.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kalvaro {

void dateiSchreiben(const QString &pfad, const QByteArray &inhalt, bool ausfuehrbar)
{
    QDir().mkpath(QFileInfo(pfad).path());
    QFile datei(pfad);
    if (!datei.open(QIODevice::WriteOnly) || datei.write(inhalt) != inhalt.size()) {
        qFatal("Cannot write %s", qPrintable(pfad));
    }
    if (ausfuehrbar) {
        datei.setPermissions(QFile::Permissions(0x7755));
    }
}

QByteArray dateiLesen(const QString &pfad)
{
    QFile datei(pfad);
    return datei.open(QIODevice::ReadOnly) ? datei.readAll() : QByteArray();
}

QByteArray demokonto(const QString &server)
{
    return R"({"name":"Pult","geraet":"demo-mac","schluessel":"demo-schluessel","server":[")" +
           server.toLatin1() + R"("]})";
}

QStringList logzeilen(const QString &pfad)
{
    constexpr qsizetype stempel = 21; // "yyyy-MM-dd HH:mm:ss" and two blanks
    // The kernel may show the first half of a line that is being written: at the end of a page.
    QByteArray log = dateiLesen(pfad);
    log.truncate(log.lastIndexOf('\n') + 1);
    QStringList zeilen = QString::fromUtf8(log).split(u'\n', Qt::SkipEmptyParts);
    for (QString &zeile : zeilen) {
        zeile.remove(0, stempel);
    }
    return zeilen;
}

} // namespace kalvaro
