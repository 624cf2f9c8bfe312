#pragma once

#include "controller/adapter.h"
#include "controller/rekordboxwache.h"
#include "controller/statusmenue.h"
#include "foundation/einstellungen.h"
#include "foundation/uhr.h"
#include "mainwindow/hauptfenster.h"
#include "mainwindow/treiber.h"
#include "server/zentrale.h"

#include <list>
#include <memory>
#include <vector>

namespace kalvaro {

// Drives the program: status item, timers, rekordbox watch, notifications and the one queue through
// which every sync passes. At most one sync runs; who asks meanwhile gets the result of that run.
class Steuerung final : public Treiber
{
    Q_OBJECT

public:
    // Called with the main window once, when it is made.
    using Fensterruf = std::function<void(Hauptfenster &)>;

    // Begins at once: with a window and a sync, or with `hintergrund` only with the status item and
    // a sync after 15 s. `geraete` must outlive this object.
    Steuerung(const Konto &konto, const Adapter &geraete, bool hintergrund,
              Fensterruf neuesFenster = {});
    ~Steuerung() override;

    void abgleich(const QString &anlass, std::function<void(const Bewertung &)> fertig) override;
    void mitteilen(const QString &titel, const QString &inhalt,
                   const std::optional<QString> &ziel) override;
    void beenden() override;

    // Opens the main window, which is made on first use, with or without a sync.
    void zeigen(bool abgleichen);

    // The computer woke from sleep: syncs 20 s later unless rekordbox runs.
    void aufgewacht();

    // Catches up a run that found no server or a busy one. For a repeating timer.
    void nachholenWennNoetig();

    [[nodiscard]] bool fensterSichtbar() const;

    // The main window; null until it is first opened.
    [[nodiscard]] Hauptfenster *fenster() const { return fenster_.get(); }

private:
    void menueVerbinden();
    void wacheVerbinden();

    void abgeschlossen(const Bewertung &b, const QString &anlass);
    void melden(const Bewertung &b, const QString &anlass);
    void setzeStatus(const QString &zeile);
    void updateAnbieten(const Bewertung &b);
    void updateOeffnen(const QString &adresse);
    Hauptfenster &fensterBereit();

    void rekordboxGestartet();
    void rekordboxBeendet();

    void menueRekordbox();
    void startpruefungFertig(bool noetig, const std::optional<QString> &hinweis);
    void menueBeenden();

    // Constant after construction.
    const Adapter adapter_;
    const Fensterruf beimAnlegen_;

    Zentrale zentrale_;
    Einstellungen einst_;
    Statusmenue menue_;
    Rekordboxwache wache_;
    std::unique_ptr<Hauptfenster> fenster_;

    // The queue.
    bool laeuftGerade_ = false;
    std::vector<std::function<void(const Bewertung &)>> wartende_;
    std::optional<Bewertung> letzte_;

    std::optional<QString> updateAdresse_;
    bool startPruefungLaeuft_ = false;

    Weckruf wachtakt_;
    Weckruf nachholtakt_;
    Weckruf anmeldeabgleich_;
    std::list<Weckruf> weckabgleiche_; // one for each time the computer woke, until it is due
};

} // namespace kalvaro
