#pragma once

#include "foundation/uhr.h"
#include "server/netzfehler.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>

#include <tl/expected.hpp>

#include <functional>
#include <optional>
#include <utility>

class QObject;

namespace kalvaro {

// A header line: name and value.
using Kopfzeile = std::pair<QByteArray, QByteArray>;

struct Netzanfrage
{
    QUrl url{}; // may hold a user's name and password
    QByteArray methode{};
    QList<Kopfzeile> kopf{}; // headers beyond those of HTTP itself
    std::optional<QByteArray> body{};
    Sekunden limit{0}; // bounds the whole exchange
};

struct Netzantwort
{
    int status = 0;
    QByteArray daten;          // decoded: without transfer or content coding
    QDateTime zertifikatBis{}; // the server's certificate is valid until then; invalid without TLS

    bool operator==(const Netzantwort &) const = default;
};

struct Netzfehler
{
    bool zeitUeberschritten = false;
    QString text{};           // a German sentence
    QString rat{};            // what helps, another one; usually empty
    bool beantwortet = false; // the server has the request and said something that is no answer
    std::optional<Netzfehlerart> art{}; // absent for a time-out

    bool operator==(const Netzfehler &) const = default;
};

// One HTTP exchange: no retries, no cache, no cookies, no connection kept for the next one.
class Transport
{
public:
    using Ergebnis = tl::expected<Netzantwort, Netzfehler>;
    using Rueckruf = std::function<void(Ergebnis)>;

    Transport() = default;
    Transport(const Transport &) = delete;
    Transport &operator=(const Transport &) = delete;
    virtual ~Transport() = default;

    // Any HTTP status is an answer. When `besitzer` is destroyed the exchange ends, and `fertig`
    // (see Einmalruf) is dropped.
    virtual void senden(const Netzanfrage &anfrage, QObject *besitzer, Rueckruf fertig) = 0;
};

} // namespace kalvaro
