#include "anfrage.h"

#include <QUrlQuery>

#include <algorithm>

namespace kalvaro::democloud {

QByteArray Anfrage::kopfzeile(const QByteArray &name) const
{
    const auto treffer = std::find_if(kopf.begin(), kopf.end(), [&](const auto &zeile) {
        return zeile.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return treffer == kopf.end() ? QByteArray() : treffer->second;
}

QString Anfrage::parameter(const QString &name) const
{
    return QUrlQuery(QString::fromUtf8(abfrage)).queryItemValue(name, QUrl::FullyDecoded);
}

} // namespace kalvaro::democloud
