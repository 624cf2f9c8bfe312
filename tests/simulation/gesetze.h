#pragma once

#include "assessment/anlass.h"
#include "assessment/bewertung.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <optional>

namespace kalvaro {

struct Ablauf;
class Beschriftung;
class Countdown;
class Hauptfenster;
class Statuskarte;
class Verweis;
class Welt;

// What must hold in a simulated world, whatever happens. Keeps the first breach.
class Gesetze final : public QObject
{
    Q_OBJECT

public:
    explicit Gesetze(const Welt &welt);

    void ablaufBeobachten();
    void fensterBeobachten(Hauptfenster &fenster);

    // The system is asked to start rekordbox; it has failed to.
    void startErbeten();
    void startGescheitert();

    // What runs of rekordbox has changed, or what is on its way.
    void rekordboxGeaendert();

    // What holds after each event, and what holds when nothing goes on any more. `nimmtAn`: a sync
    // that was asked for then has begun at once.
    void pruefen();
    void ruhePruefen(bool nimmtAn);

    // Something that was shown still has to come true by itself.
    [[nodiscard]] bool versprochen() const { return nachEnde_ || nochmal_; }

    [[nodiscard]] const std::optional<QString> &verstoss() const { return verstoss_; }

    // What there was to look at: starts, countdowns that came to their end, promises.
    [[nodiscard]] int starts() const { return starts_; }
    [[nodiscard]] int countdowns() const { return countdowns_; }
    [[nodiscard]] int gegeben() const { return gegeben_; }

private:
    using Zeit = std::chrono::milliseconds;

    void begonnen(Anlass anlass);
    void fertig(const Bewertung &b);
    void gezeigt(const QString &detail);
    void versprechen(std::optional<Zeit> &was);
    void abgelaufen();
    void verlangen(bool gilt, const QString &gesetz);
    void versprechenPruefen(const std::optional<Zeit> &seit, const QString &was);
    void anzeigePruefen();
    void countdownPruefen();
    [[nodiscard]] Zeit jetzt() const;
    [[nodiscard]] bool rekordboxRuht() const;
    [[nodiscard]] bool kannAlsRuhendGelten() const;

    const Welt &welt_;
    std::optional<QString> verstoss_;

    QPointer<Hauptfenster> fenster_;
    Statuskarte *karte_ = nullptr; // these belong to the window
    Beschriftung *detail_ = nullptr;
    Beschriftung *countdowntext_ = nullptr;
    Verweis *abgleichlink_ = nullptr;

    Zeit laeuftSeit_{0};      // something of rekordbox runs; only while so
    Zeit ruhtSeit_{0};        // nothing of rekordbox runs or is on its way; only while so
    Zeit letzterAbgleich_{0}; // the end of the last sync
    std::optional<Zeit> startErbetenUm_;
    bool abgleichBeimStart_ = false;    // one began since then, while nothing ran
    std::optional<Zeit> nachEnde_;      // promised: a sync once rekordbox is gone
    std::optional<Zeit> nochmal_;       // promised: another try
    std::optional<Zeit> countdownEnde_; // by when a countdown on display is over
    bool ruhte_ = true;                 // at the last change
    int countdownRest_ = 0;             // the seconds that it showed last

    int starts_ = 0;
    int countdowns_ = 0;
    int gegeben_ = 0;
};

} // namespace kalvaro
