#pragma once

#include "abgleich.h"
#include "anfrage.h"

#include <QJsonObject>
#include <QSet>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

inline constexpr double laengsteDauer = 86'400; // s that a sync may take

// The cloud behind the HTTP server: answers one request at a time per calling thread, from any
// thread. A sync blocks its caller for the set duration, or until beenden().
class Dienst
{
public:
    // `uhr` is called under the lock and from the callers' threads. A world without a beginning
    // begins now.
    Dienst(Welt welt, QByteArray schluessel, std::function<QDateTime()> uhr);

    // True when the request is good so far and its body decides the rest.
    [[nodiscard]] bool brauchtInhalt(const Anfrage &anfrage) const;
    [[nodiscard]] Antwort antworten(const Anfrage &anfrage);

    void beenden();  // every waiting call answers 503 at once, and later ones do not wait
    void beginnen(); // after beenden(): waits again

    void setDauer(double sekunden); // also for syncs under way; 0 to laengsteDauer
    void setSzenario(Szenario szenario);
    [[nodiscard]] Welt welt() const;
    void aendern(const std::function<void(Welt &)> &aenderung);
    [[nodiscard]] qsizetype laufendeAbgleiche() const;
    [[nodiscard]] QList<Anfrage> anfragen() const;
    void anfragenVergessen();

private:
    using Sperre = std::unique_lock<std::mutex>;

    [[nodiscard]] Antwort weiterleiten(const Anfrage &anfrage, Sperre &sperre);
    [[nodiscard]] Antwort abgleichen(const QJsonObject &inhalt, Sperre &sperre);
    [[nodiscard]] Antwort abgeschlossen(const QJsonObject &inhalt);
    [[nodiscard]] Antwort abgleichMelden(const Geraet &geraet, const Abgleich &abgleich);
    [[nodiscard]] Antwort stand(const QString &name);
    [[nodiscard]] Antwort playlisten(const QString &name);
    [[nodiscard]] Antwort einstellungen(const QJsonObject &inhalt);
    // False when the cloud ends first.
    [[nodiscard]] bool dauerAbwarten(Sperre &sperre);
    void merken(const Anfrage &anfrage);

    const QByteArray schluessel_;
    const std::function<QDateTime()> uhr_;

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable geaendert_;
    Welt welt_;
    Szenario szenario_ = Szenario::Keins;
    std::chrono::duration<double> dauer_{0};
    QSet<QString> laufende_; // devices whose sync is under way
    QList<Anfrage> anfragen_;
    bool ende_ = false;
};
