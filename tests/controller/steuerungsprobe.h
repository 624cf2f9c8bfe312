#pragma once

#include "controller/adapter.h"
#include "controller/steuerung.h"
#include "doubles/buendel.h"
#include "doubles/datenordner.h"
#include "doubles/fakeanmeldestart.h"
#include "doubles/fakearbeitsplatz.h"
#include "doubles/fakemitteilungen.h"
#include "doubles/fakeprozesse.h"
#include "doubles/fakestatusobjekt.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "rekordbox/rekordbox.h"

namespace kalvaro {

// An answer of the server to a sync that ended in `zustand`; `mehr` adds keys to it.
[[nodiscard]] Transport::Ergebnis abgleichAntwort(const QString &zustand,
                                                  const QJsonObject &mehr = {});

// An answer with status 200.
[[nodiscard]] Transport::Ergebnis jsonAntwort(const QJsonObject &inhalt);

// The keys of an answer that offer `version`.
[[nodiscard]] QJsonObject angebot(const QString &version);

// A controller with all that it runs on, each of it scripted: a clock that the test moves, a server
// that answers from two lists, a process table, a desktop and a folder of applications.
class Steuerungsprobe
{
public:
    // Nothing is installed, nothing runs, the data folder is empty.
    Steuerungsprobe();

    void starten(bool hintergrund = true);

    // Moves on and runs what becomes due; without an argument only what is due now.
    void vor(double sekunden = 0);

    // Puts "rekordbox VERSION/rekordbox.app" into the folder of applications; returns the bundle.
    QString installieren(const QString &version) const;
    void deinstallieren(const QString &version) const;

    // What runs: the application (its bundle and so many processes) and its agent.
    void rekordboxLaeuft(bool offen, int haupt, int agent);
    void rekordboxOffen() { rekordboxLaeuft(true, 1, 1); }
    void rekordboxZu() { rekordboxLaeuft(false, 0, 0); }

    // The reasons of all syncs that reached the server, in order.
    [[nodiscard]] QStringList anlaesse() const;
    // The lines of all requests but probes, in order.
    [[nodiscard]] QStringList anfragen() const;

    [[nodiscard]] static QStringList protokoll() { return ordner().protokollzeilen(); }
    [[nodiscard]] static Datenordner &ordner();

    // The menu's first row, and the row with that text; ends the test when there is none.
    [[nodiscard]] QString kopf() const;
    [[nodiscard]] QAction *zeile(const QString &text) const;

    // The main window's label or button of that name; "" while there is no window.
    [[nodiscard]] QString beschriftung(const QString &name) const;

    // What the server answers to syncs and to questions for the state, first come, first served;
    // past the end they hang.
    QList<Transport::Ergebnis> abgleiche;
    QList<Transport::Ergebnis> staende;

    Testuhr uhr;
    Scripttransport netz{&uhr};
    FakeProzesse prozesse;
    FakeArbeitsplatz arbeitsplatz;
    FakeAnmeldestart anmeldestart;
    FakeMitteilungen mitteilungen;
    FakeStatusobjekt statusobjekt;
    const Programmordner programme;
    const Rekordbox rekordbox{prozesse, programme.pfad()};
    const Adapter adapter{uhr,          netz,         prozesse,     rekordbox,
                          arbeitsplatz, anmeldestart, mitteilungen, statusobjekt};
    Konto konto{QStringLiteral("Mein Mac"),
                QStringLiteral("mac1"),
                QStringLiteral("geheim"),
                {QStringLiteral("http://cloud")}};

    std::unique_ptr<Steuerung> steuerung;
};

} // namespace kalvaro
