#include "foundation/datenordner.h"

#include <QDir>
#include <QStandardPaths>

namespace kalvaro {

using namespace Qt::StringLiterals;

QString datenwurzel()
{
    QString ordner = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (QDir::isRelativePath(ordner)) {
        ordner = QDir::homePath() + u"/.local/share"_s;
    }
    while (ordner.endsWith(u'/')) {
        ordner.chop(1);
    }
    return ordner;
}

const QString &appOrdner()
{
    static const QString ordner = datenwurzel() + u"/kalvaro"_s;
    return ordner;
}

void ordnerAnlegen()
{
    QDir().mkpath(appOrdner());
}

QString datei(const QString &name)
{
    return appOrdner() + u'/' + name;
}

} // namespace kalvaro
