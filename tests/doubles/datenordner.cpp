#include "doubles/datenordner.h"

#include "doubles/dateien.h"
#include "foundation/datenordner.h"

#include <QDir>

namespace kalvaro {

using namespace Qt::StringLiterals;

Datenordner::Datenordner()
{
    qputenv("XDG_DATA_HOME", ordner.path().toLocal8Bit());
    // A Mac goes by the home folder that the whole process was given (packaging/macos/testheim.sh).
    const QString heim = qEnvironmentVariable("CFFIXED_USER_HOME");
    const QString soll =
        (heim.isEmpty() ? ordner.path() : heim + u"/Library/Application Support"_s) + u"/kalvaro"_s;
    // Compared as folders: a Mac's temporary ones lie behind a link.
    QDir().mkpath(soll);
    if (QDir(appOrdner()) != QDir(soll)) {
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
    dateiSchreiben(datei(name), inhalt);
}

QByteArray Datenordner::inhalt(const QString &name) const
{
    return dateiLesen(datei(name));
}

QStringList Datenordner::protokollzeilen() const
{
    return logzeilen(datei(u"kalvaro.log"_s));
}

} // namespace kalvaro
