#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace kalvaro {

// Any JSON value, a scalar too; ends the program when `quelle` is none.
inline QJsonValue json(const QByteArray &quelle)
{
    QJsonParseError fehler;
    const QJsonDocument dokument = QJsonDocument::fromJson('[' + quelle + ']', &fehler);
    if (fehler.error != QJsonParseError::NoError || dokument.array().size() != 1) {
        qFatal("The test's own JSON is broken: %s", quelle.constData());
    }
    return dokument.array().at(0);
}

// A whole document with `tiefe` maps, one in the other under the key "a", around `kern`. The parser
// takes 1024 levels, and not one more.
inline QJsonDocument verschachtelt(int tiefe, const QByteArray &kern)
{
    return QJsonDocument::fromJson(QByteArray("{\"a\":").repeated(tiefe) + kern +
                                   QByteArray("}").repeated(tiefe));
}

} // namespace kalvaro
