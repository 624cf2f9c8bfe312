#pragma once

#include "app/kommandozeile.h"
#include "foundation/konto.h"
#include "foundation/uhr.h"
#include "server/transport.h"

#include <QObject>

#include <memory>

namespace kalvaro {

class Arbeitsplatz;
class Einstellungen;
class Hauptfenster;
class Rekordbox;
class Zentrale;

// The adapters that the program runs on.
struct Adapter
{
    Uhr &uhr;
    Transport &transport;
    const Rekordbox &rekordbox;
    Arbeitsplatz &arbeitsplatz;
};

// The program between start and end.
class Programm final : public QObject
{
    Q_OBJECT

public:
    explicit Programm(const Adapter &geraete);
    ~Programm() override;

    // Loads the account and begins what the command line asks for; call it from the event loop.
    void starten(const Kommandozeile &kommandozeile);

private:
    void ohneKonto(const QString &grund);
    void fensterStarten(const Konto &konto, const std::optional<QString> &bild);

    const Adapter adapter;
    std::unique_ptr<Zentrale> zentrale;
    std::unique_ptr<Einstellungen> einstellungen;
    std::unique_ptr<Hauptfenster> bildFenster;
};

} // namespace kalvaro
