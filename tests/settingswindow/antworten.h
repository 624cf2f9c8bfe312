#pragma once

#include "settingswindow/knoten.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// Answers with playlists, as a server sends them.
namespace kalvaro {

// One entry; `mehr` adds keys or replaces them, a value of QJsonValue::Undefined removes one.
inline QJsonObject eintrag(const QString &id, const QString &eltern, const QJsonObject &mehr = {})
{
    QJsonObject e{{QStringLiteral("id"), id},
                  {QStringLiteral("uuid"), QStringLiteral("u") + id},
                  {QStringLiteral("name"), QStringLiteral("N") + id},
                  {QStringLiteral("ordner"), false},
                  {QStringLiteral("titel"), 10},
                  {QStringLiteral("eltern"), eltern},
                  {QStringLiteral("seq"), 0}};
    for (auto i = mehr.begin(); i != mehr.end(); ++i) {
        e.insert(i.key(), i.value());
    }
    return e;
}

inline QJsonObject ordner(const QString &id, const QString &eltern, QJsonObject mehr = {})
{
    mehr.insert(QStringLiteral("ordner"), true);
    return eintrag(id, eltern, mehr);
}

inline QJsonObject antwort(const QJsonArray &playlisten, const QStringList &lokal = {})
{
    return {{QStringLiteral("playlisten"), playlisten},
            {QStringLiteral("lokal"), QJsonArray::fromStringList(lokal)}};
}

// Folder 1 with playlists 2, 3 and folder 4, which holds playlist 5; beside it playlist 6.
inline QJsonArray beispiel()
{
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    const auto platz = [](int seq) { return QJsonObject{{QStringLiteral("seq"), seq}}; };
    return {ordner(s("1"), s("root"), platz(1)), eintrag(s("2"), s("1"), platz(1)),
            eintrag(s("3"), s("1"), platz(2)),   ordner(s("4"), s("1"), platz(3)),
            eintrag(s("5"), s("4"), platz(1)),   eintrag(s("6"), s("root"), platz(2))};
}

// A folder in a folder in a folder, `tiefe` of them, the last one with a playlist.
inline QJsonArray kette(int tiefe)
{
    QJsonArray liste;
    for (int i = 0; i < tiefe; ++i) {
        liste.append(ordner(QString::number(i), QString::number(i - 1)));
    }
    liste.append(eintrag(QStringLiteral("blatt"), QString::number(tiefe - 1)));
    return liste;
}

inline QByteArray alsText(const QJsonObject &objekt)
{
    return QJsonDocument(objekt).toJson(QJsonDocument::Compact);
}

// The uuids in what is sent of a choice.
inline QStringList auswahlliste(const Knotenliste &alle)
{
    QStringList uuids;
    const QJsonArray liste = QJsonDocument::fromJson(auswahl(alle)).array();
    for (const QJsonValue &uuid : liste) {
        uuids.append(uuid.toString());
    }
    return uuids;
}

} // namespace kalvaro
