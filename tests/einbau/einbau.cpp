#include "einbau/einbau.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>

namespace kalvaro {

using namespace Qt::StringLiterals;

Einbau::Einbau(Art art, const QString &praefix)
    : wurzel_(ordner_.path() + praefix)
{
    auto umgebung = QProcessEnvironment::systemEnvironment();
    if (art == Art::Ziel) {
        umgebung.insert(u"DESTDIR"_s, ordner_.path());
    } else {
        umgebung.remove(u"DESTDIR"_s);
    }
    QProcess cmake;
    cmake.setProcessEnvironment(umgebung);
    cmake.setProcessChannelMode(QProcess::MergedChannels);
    cmake.start(QStringLiteral(CMAKE), {u"--install"_s, QStringLiteral(BAUORDNER), u"--prefix"_s,
                                        art == Art::Ziel ? praefix : wurzel_});
    cmake.waitForFinished();
    if (cmake.exitStatus() != QProcess::NormalExit || cmake.exitCode() != 0) {
        qFatal("cmake --install: %s", cmake.readAll().constData());
    }
}

QString Einbau::ort(const QString &datei) const
{
    return wurzel_ + u'/' + datei;
}

QStringList Einbau::dateien() const
{
    QStringList liste;
    QDirIterator laeufer(wurzel_, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (laeufer.hasNext()) {
        liste.append(QDir(wurzel_).relativeFilePath(laeufer.next()));
    }
    liste.sort();
    return liste;
}

} // namespace kalvaro
