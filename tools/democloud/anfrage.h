#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

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
    [[nodiscard]] QByteArray kopfzeile(const QByteArray &name) const;
    // The decoded query parameter; empty when missing. "+" stands for itself, as in RFC 3986.
    [[nodiscard]] QString parameter(const QString &name) const;
};

struct Antwort
{
    int status = 200;
    QByteArray inhalt = {};
    QByteArray erlaubt = {}; // value of the header "Allow"; empty: none
};

} // namespace kalvaro::democloud
