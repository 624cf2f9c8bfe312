#include "foundation/protokoll.h"

#include "foundation/datenordner.h"
#include "foundation/gewoehnlichedatei.h"

#include <QDateTime>
#include <QStringEncoder>

namespace kalvaro {

using namespace Qt::StringLiterals;

void protokoll(const QString &zeile)
{
    const QString ganz =
        QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s) + u"  "_s + zeile + u'\n';
    QStringEncoder utf8(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const QByteArray bytes = utf8.encode(ganz);
    if (utf8.hasError()) {
        return;
    }
    gewoehnlichErgaenzen(datei(u"kalvaro.log"_s), bytes);
}

} // namespace kalvaro
