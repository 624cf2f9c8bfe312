#pragma once

#include "anfrage.h"
#include "szenario.h"
#include "welt.h"

#include <functional>
#include <memory>
#include <optional>
#include <tl/expected.hpp>

struct DemocloudOptionen
{
    int port = 0;                                           // 0: a free one
    QString schluessel = QStringLiteral("demo-schluessel"); // empty: requests carry none
    double dauer = 0;                                       // seconds that a sync takes
    Szenario szenario = Szenario::Keins;
    std::optional<Welt> welt = {}; // absent: beispielwelt() for the start of the clock
    // The world's clock, called from the server's threads; absent: the system's. It does not drive
    // `dauer`, which passes in real time.
    std::function<QDateTime()> uhr = {};
};

// The demo cloud: an HTTP server on 127.0.0.1 with a world behind it that lives as long as this
// object. It serves on threads of its own and needs no event loop. starten(), beenden() and the
// destructor belong to one thread; everything else may be called from any.
class Democloud
{
public:
    explicit Democloud(DemocloudOptionen optionen = {});
    Democloud(const Democloud &) = delete;
    Democloud &operator=(const Democloud &) = delete;
    ~Democloud(); // as beenden()

    // Begins to serve; the error is a German sentence. After beenden() it serves again, with the
    // same world, on the port of the first time.
    [[nodiscard]] tl::expected<void, QString> starten();
    // Ends within a fraction of a second, whatever is in flight: syncs under way answer 503 and
    // change nothing. Idempotent.
    void beenden();
    [[nodiscard]] int port() const;        // 0 before the first start
    [[nodiscard]] QString adresse() const; // "http://127.0.0.1:" and the port

    // What was asked, oldest first (the last 20,000), recorded before it is answered.
    [[nodiscard]] QList<Anfrage> anfragen() const;
    void anfragenVergessen();
    // Devices whose sync is under way.
    [[nodiscard]] qsizetype laufendeAbgleiche() const;

    // Both hold for syncs under way too: a test starts a sync that takes an hour, looks, and lets
    // it end with setDauer(0).
    void setDauer(double sekunden);
    void setSzenario(Szenario szenario);
    // A copy of the world, and a change to it between two requests.
    [[nodiscard]] Welt welt() const;
    void aendern(const std::function<void(Welt &)> &aenderung);

private:
    struct Innen;
    std::unique_ptr<Innen> innen_;
};
