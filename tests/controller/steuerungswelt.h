#pragma once

#include "controller/steuerung.h"
#include "doubles/testumgebung.h"

#include <QAction>

namespace kalvaro {

// A controller, and all that it runs on scripted.
struct Steuerungswelt : Testumgebung
{
    ~Steuerungswelt();

    // `anderes`: in place of the scripted network.
    void starten(bool hintergrund = true, const Steuerung::Fensterruf &neuesFenster = {},
                 Transport *anderes = nullptr);

    // Ends the controller and what it drives.
    void beenden();

    // Puts "rekordbox VERSION/rekordbox.app" into the folder of applications; returns the bundle.
    QString installieren(const QString &version) const { return programme.installieren(version); }
    void deinstallieren(const QString &version) const { programme.deinstallieren(version); }

    // Asks for a sync as everybody does.
    void abgleich(Anlass anlass, Abgleicher::Rueckruf fertig = {}) const
    {
        ablauf->abgleicher.abgleich(anlass, steuerung.get(), std::move(fertig));
    }

    // The lines of all requests but probes, in order.
    [[nodiscard]] QStringList anfragen() const;

    // The menu's first row, and the row with that text; ends the test when there is none.
    [[nodiscard]] QString kopf() const;
    [[nodiscard]] QAction *zeile(const QString &text) const;

    // The main window's label or button of that name; "" while there is no window.
    [[nodiscard]] QString beschriftung(const QString &name) const;

    std::unique_ptr<Ablauf> ablauf;
    std::unique_ptr<Steuerung> steuerung;
};

} // namespace kalvaro
