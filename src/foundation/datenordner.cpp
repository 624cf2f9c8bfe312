#include "foundation/datenordner.h"

#include <QDir>
#include <QStandardPaths>

namespace kalvaro {

using namespace Qt::StringLiterals;

const QString &appOrdner()
{
    static const QString ordner =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/kalvaro"_s;
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
