#include "doubles/datenordner.h"

#include "doubles/dateien.h"
#include "foundation/datenordner.h"

#include <QDir>

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
