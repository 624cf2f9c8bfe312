#pragma once

#include "pruefung/adressprobe.h"
#include "pruefung/befund.h"
#include "pruefung/kontolage.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kalvaro {

class Rekordbox;
class Schreibtischauskunft;
class Transport;

// What the check-up runs on. All of it must outlive it.
struct Pruefumgebung
{
    const Uhr &uhr;
    Transport &transport;
    const Rekordbox &rekordbox;
    const Schreibtischauskunft &schreibtisch;
    QString programmordner{}; // where rekordbox was looked for
    Namenssuche namenssuche{};
};

// The check-up of whoever sets the computer up: account, cloud, rekordbox and desktop, one finding
// after the other. Nothing is written and no sync begins, so it may run beside the program.
class Pruefung final : public QObject
{
    Q_OBJECT

public:
    using Rueckruf = std::function<void(const QList<Befund> &)>;

    explicit Pruefung(Pruefumgebung umgebung);
    ~Pruefung() override;

    // Asks all addresses at once, so the whole takes as long as the slowest: about 14 s at most.
    // `fertig` gets the findings, already without the key and in plain text (see bereinigt()); it
    // is called once, from the event loop. To be called once.
    void beginnen(Rueckruf fertig);

private:
    void zaehlen();
    void gezaehlt();
    void oertliches();
    void fragen(const Konto &konto);
    void fertigstellen();

    const Pruefumgebung umgebung_;
    Rueckruf fertig_;

    std::optional<bool> haupt_; // of rekordbox and its agent, whether it runs; absent: still asked
    std::optional<bool> agent_;
    Kontolage konto_;
    QList<Befund> rechner_; // findings that need no network
    std::unique_ptr<Zentrale> zentrale_;
    std::vector<std::optional<Adresslage>> adressen_; // in the account's order; absent: still asked
};

} // namespace kalvaro
