#pragma once

#include <QByteArray>
#include <QHash>
#include <QUrlQuery>

namespace kalvaro::democloud {

// A request as the cloud received it.
struct Anfrage
{
    QByteArray methode;
    QString pfad;                            // without the query
    QByteArray abfrage = {};                 // the query as sent, without "?"
    QHash<QByteArray, QByteArray> kopf = {}; // by name in lower case
    QByteArray inhalt = {};                  // read for POST only

    // The header of that name (any case), or an empty value.
    [[nodiscard]] QByteArray kopfzeile(const QByteArray &name) const
    {
        return kopf.value(name.toLower());
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
