#pragma once

#include "ablauf/umgebung.h"
#include "app/kommandozeile.h"
#include "foundation/uhr.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>

#include <memory>

namespace kalvaro {

struct Ablauf;
class Hauptfenster;
class Steuerung;

// The program between start and end. It lives in one of two ways: with a controller, until the user
// quits, or in picture mode with one window, until that closes.
class Programm final : public QObject
{
    Q_OBJECT

public:
    // With `bildschirm` somebody can see and close an alert.
    explicit Programm(const Umgebung &umgebung, bool bildschirm = hatBildschirm());
    ~Programm() override;

    // Loads the account and begins what the command line asks for. Without an account it says so
    // and ends the program. With "--dienst" it waits for a wish first, 10 s at most.
    void starten(const Kommandozeile &kommandozeile);

    // What another start or the desktop wants of the program while it runs; after "--dienst" the
    // first wish is what the program starts for.
    void erfuellen(Wunsch wunsch);

    // Whether the libraries find what they need from the start, and end the program without. Says
    // so if not.
    [[nodiscard]] static bool kannStarten();

    // In place of all this where nothing can be shown, for the reason `mangel`: says so, or that
    // there is no account. Returns the status to end with.
    [[nodiscard]] static int ohneAnzeige(const QString &mangel);

    // In place of all this where another one runs: says so when that one does not answer. Returns
    // the status to end with.
    [[nodiscard]] static int nebenEinemAnderen(Belegung platz);

private:
    [[nodiscard]] static bool hatBildschirm();

    void beginnen(const Kommandozeile &kommandozeile);
    void ohneKonto(const QString &grund);
    void alarmZeigen();
    void bildStarten(const QString &pfad);

    const Umgebung umgebung_;
    const bool mitBildschirm_;

    Weckruf geduld_; // between a start by the bus and what it is for

    QPointer<QMessageBox> alarm_;    // that there is no account
    std::unique_ptr<Ablauf> ablauf_; // once there is an account
    std::unique_ptr<Steuerung> steuerung_;
    std::unique_ptr<Hauptfenster> bildFenster_; // picture mode
};

} // namespace kalvaro
