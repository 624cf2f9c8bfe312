#pragma once

#include "abgleich.h"
#include "anfrage.h"

#include <QJsonObject>
#include <QSet>

#include <tl/expected.hpp>

namespace kalvaro::democloud {

// The answers of the API (docs/cloud-api.yaml) as functions of the world. None waits; the caller
// holds the lock.

// What the answers look at.
struct Umstaende
{
    Welt &welt;
    const QSet<QString> &laufende; // devices whose sync is under way
    QDateTime jetzt;
};

// The addresses of the API.
[[nodiscard]] QStringList wege();

[[nodiscard]] Antwort fehlerAntwort(int status, const QString &text);
[[nodiscard]] Antwort unbekanntesGeraet(const QString &name);
// Why a request is refused before its body is looked at: address, method, key, in this order.
[[nodiscard]] std::optional<Antwort> ablehnung(const Anfrage &anfrage,
                                               const QByteArray &schluessel);
// The body as an object that has a text under each of `texte`, or the answer 400.
[[nodiscard]] tl::expected<QJsonObject, Antwort> objektAus(const QByteArray &inhalt,
                                                           const QStringList &texte);

// The answer to everything but a sync; keeps the chosen playlists.
[[nodiscard]] Antwort antwort(const Umstaende &umstaende, const Anfrage &anfrage);
[[nodiscard]] Antwort abgleichAntwort(const Umstaende &umstaende, const Geraet &geraet,
                                      const Abgleich &abgleich);

} // namespace kalvaro::democloud
