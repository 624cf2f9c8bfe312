#pragma once

#include "antworten.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace kalvaro::democloud {

class Httpserver;

inline constexpr double laengsteDauer = 86'400;     // s that a sync may take
inline constexpr qsizetype meisteAnfragen = 20'000; // recorded; the oldest go first

struct DemocloudOptionen
{
    int port = 0;                                           // 0: a free one
    QString schluessel = QStringLiteral("demo-schluessel"); // empty: requests carry none
    double dauer = 0;                                       // seconds that a sync takes
    Szenario szenario = Szenario::Keins;
    std::optional<Welt> welt = {}; // absent: beispielwelt() for the start of the clock
    // The world's clock, called under the lock from the server's threads. It does not drive
    // `dauer`, which passes in real time.
    std::function<QDateTime()> uhr = [] { return QDateTime::currentDateTime(); };
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
    [[nodiscard]] int port() const { return port_; } // 0 before the first start
    [[nodiscard]] QString adresse() const
    {
        return QStringLiteral("http://127.0.0.1:%1").arg(port_);
    }

    // What was asked, oldest first (the last meisteAnfragen), recorded before it is answered.
    [[nodiscard]] QList<Anfrage> anfragen() const;
    void anfragenVergessen();
    // Devices whose sync is under way.
    [[nodiscard]] qsizetype laufendeAbgleiche() const;

    // Both hold for syncs under way too: a test starts a sync that takes an hour, looks, and lets
    // it end with setDauer(0).
    void setDauer(double sekunden); // 0 to laengsteDauer
    void setSzenario(Szenario szenario);
    // A copy of the world, and a change to it between two requests.
    [[nodiscard]] Welt welt() const;
    void aendern(const std::function<void(Welt &)> &aenderung);

private:
    using Sperre = std::unique_lock<std::mutex>;

    // Called by the server's threads. A sync keeps its caller for the set duration, or until
    // beenden().
    [[nodiscard]] Antwort antworten(const Anfrage &anfrage);
    [[nodiscard]] Antwort abgleichen(const Anfrage &anfrage, Sperre &sperre);
    void dauerAbwarten(Sperre &sperre); // returns early when the cloud ends
    // Why there is no other answer now: the cloud ends, or a scenario wants an error.
    [[nodiscard]] std::optional<Antwort> stoerung() const;
    // The world as it is now.
    [[nodiscard]] Umstaende umstaende();

    const QByteArray schluessel_;
    const std::function<QDateTime()> uhr_;

    int port_;
    std::unique_ptr<Httpserver> server_; // while it serves

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable geaendert_;
    Welt welt_;
    Szenario szenario_;
    double dauer_;           // seconds
    QSet<QString> laufende_; // devices whose sync is under way
    QList<Anfrage> anfragen_;
    bool ende_ = false; // nobody waits any more
};

} // namespace kalvaro::democloud
