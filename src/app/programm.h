#pragma once

#include "app/kommandozeile.h"
#include "controller/adapter.h"

#include <QObject>

#include <memory>

namespace kalvaro {

class Einstellungen;
class Hauptfenster;
struct Konto;
class Steuerung;
class Zentrale;

// The program between start and end. It lives in one of two ways: with a controller, until the user
// quits, or in picture mode with one window, until that closes.
class Programm final : public QObject
{
    Q_OBJECT

public:
    // With `bildschirm` somebody can see and close an alert.
    explicit Programm(const Adapter &geraete, bool bildschirm = hatBildschirm());
    ~Programm() override;

    // Loads the account and begins what the command line asks for. Without an account it says so
    // and ends the program.
    void starten(const Kommandozeile &kommandozeile);

    // The program was started again while it runs: opens the window with a sync.
    void wiederOeffnen();

    // The computer woke from sleep.
    void aufgewacht();

private:
    [[nodiscard]] static bool hatBildschirm();

    void ohneKonto(const QString &grund);
    void bildStarten(const Konto &konto, const QString &pfad);

    const Adapter adapter_;
    const bool mitBildschirm_;

    std::unique_ptr<Steuerung> steuerung_;

    // Picture mode.
    std::unique_ptr<Zentrale> bildZentrale_;
    std::unique_ptr<Einstellungen> bildEinstellungen_;
    std::unique_ptr<Hauptfenster> bildFenster_;
};

} // namespace kalvaro
