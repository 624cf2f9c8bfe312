#include "platform/buendel.h"

#include "foundation/gewoehnlichedatei.h"
#include "platform/plist.h"

namespace kalvaro {

using namespace Qt::StringLiterals;

QString infodatei(const QString &buendel)
{
    return buendel + u"/Contents/Info.plist"_s;
}

std::optional<QString> infotext(const QString &buendel, QStringView schluessel)
{
    const auto inhalt = gewoehnlichLesen(infodatei(buendel));
    return inhalt ? plistText(*inhalt, schluessel) : std::nullopt;
}

} // namespace kalvaro
