#pragma once

#include <QByteArray>
#include <QList>
#include <QUrlQuery>

#include <algorithm>
#include <utility>

namespace kalvaro::democloud {

// A request as the cloud received it.
struct Anfrage
{
    QByteArray methode;
    QString pfad;            // without the query
    QByteArray abfrage = {}; // the query as sent, without "?"
    QList<std::pair<QByteArray, QByteArray>> kopf = {};
    QByteArray inhalt = {}; // read for POST only

    // The first header of that name (any case), or an empty value.
    [[nodiscard]] QByteArray kopfzeile(const QByteArray &name) const
    {
        const auto treffer = std::find_if(kopf.begin(), kopf.end(), [&](const auto &zeile) {
            return zeile.first.compare(name, Qt::CaseInsensitive) == 0;
        });
        return treffer == kopf.end() ? QByteArray() : treffer->second;
    }
    // The decoded query parameter; empty when missing. "+" stands for itself, as in RFC 3986.
    [[nodiscard]] QString parameter(const QString &name) const
    {
        return QUrlQuery(QString::fromUtf8(abfrage)).queryItemValue(name, QUrl::FullyDecoded);
    }
};

struct Antwort
{
    int status = 200;
    QByteArray inhalt = {};
    QByteArray erlaubt = {}; // value of the header "Allow"; empty: none
};

} // namespace kalvaro::democloud
