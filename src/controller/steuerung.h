#pragma once

#include "ablauf/ablauf.h"
#include "controller/statusmenue.h"
#include "foundation/uhr.h"
#include "mainwindow/hauptfenster.h"

#include <list>
#include <memory>

namespace kalvaro {

// Drives the program: what is reported of syncs and of rekordbox (log, status item, notifications,
// update offer), the timers, and the wiring of menu and main window.
class Steuerung final : public QObject
{
    Q_OBJECT

public:
    // Called with the main window once, when it is made.
    using Fensterruf = std::function<void(Hauptfenster &)>;

    // Begins at once: with a window and a sync, or with `hintergrund` only with the status item and
    // a sync after 15 s. `ablauf` must outlive this object.
    explicit Steuerung(Ablauf &ablauf, bool hintergrund, Fensterruf neuesFenster = {});
    ~Steuerung() override;

    // Opens the main window, which is made on first use, with or without a sync.
    void zeigen(bool abgleichen);

    // Ends the program, as "kalvaro beenden" of the menu does.
    void beenden();

    [[nodiscard]] bool fensterSichtbar() const;

    // The main window; null until it is first opened.
    [[nodiscard]] Hauptfenster *fenster() const { return fenster_.get(); }

private:
    void menueVerbinden();
    void ablaufVerbinden();
    void takteStellen(bool hintergrund);
    Hauptfenster &fensterBereit();
    void leisteGewechselt();
    void schliessen();

    // What is reported.
    void begonnen(Anlass anlass);
    void fertig(const Bewertung &b, Anlass anlass);
    void melden(const Bewertung &b, Anlass anlass);
    void setzeStatus(const QString &zeile);
    void mitteilen(const QString &titel, const QString &text,
                   const std::optional<QString> &ziel = {});
    void updateAnbieten(const Bewertung &b);
    void updateOeffnen(const QString &adresse);
    void rekordboxGestartet();
    void ausstehendesMelden();
    void rekordboxBeendet();
    void ablageMelden();

    // What is due.
    void nachholenWennNoetig();
    void aufgewacht();
    void abgleichWennMoeglich(Anlass anlass);

    // Constant after construction.
    Ablauf &ablauf_;
    const Umgebung &umgebung_;
    const Fensterruf beimAnlegen_;

    Statusmenue menue_;
    std::unique_ptr<Hauptfenster> fenster_;

    bool ablageGemeldet_ = false;

    std::optional<Bewertung> letzte_; // of the last finished run
    std::optional<QString> updateAdresse_;
    std::unique_ptr<QObject>
        laufzeitRekordbox_; // lives while rekordbox runs that was seen to start

    Weckruf wachtakt_;
    Weckruf nachholtakt_;
    Weckruf anmeldeabgleich_;
    Weckruf leistenverlust_;           // the bar is gone, perhaps only for a moment
    std::list<Weckruf> weckabgleiche_; // one for each time the computer woke, until it is due
};

} // namespace kalvaro
