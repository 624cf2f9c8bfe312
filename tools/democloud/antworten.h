#pragma once

#include "abgleich.h"

#include <QJsonArray>
#include <QJsonObject>

// The bodies of the API's answers: pure functions of the world.

[[nodiscard]] QJsonObject statusAntwort(const Welt &welt, const QDateTime &jetzt);
[[nodiscard]] QJsonObject abgleichAntwort(const Welt &welt, const Geraet &geraet,
                                          const Abgleich &abgleich, const QJsonArray &andere);
[[nodiscard]] QJsonObject standAntwort(const Welt &welt, const Geraet &geraet,
                                       const QJsonArray &andere);
// As bytes: the list can be large and is stored serialised.
[[nodiscard]] QByteArray playlistenAntwort(const Welt &welt, const Geraet &geraet);
[[nodiscard]] QJsonObject einstellungenAntwort(const Geraet &geraet);
[[nodiscard]] QJsonObject fehlerAntwort(const QString &text);

[[nodiscard]] QByteArray alsJson(const QJsonObject &objekt);
