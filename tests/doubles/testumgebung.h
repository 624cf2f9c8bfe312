#pragma once

#include "ablauf/umgebung.h"
#include "doubles/buendel.h"
#include "doubles/datenordner.h"
#include "doubles/fakeanmeldestart.h"
#include "doubles/fakearbeitsplatz.h"
#include "doubles/fakemitteilungen.h"
#include "doubles/fakeprozesse.h"
#include "doubles/fakestatusobjekt.h"
#include "doubles/scripttransport.h"
#include "doubles/testuhr.h"
#include "foundation/konto.h"
#include "rekordbox/rekordbox.h"

#include <QJsonObject>

namespace kalvaro {

// An answer with status 200.
[[nodiscard]] Transport::Ergebnis jsonAntwort(const QJsonObject &inhalt);

// An answer of the server to a sync that ended in `zustand`; `mehr` adds keys to it.
[[nodiscard]] Transport::Ergebnis abgleichAntwort(const QString &zustand,
                                                  const QJsonObject &mehr = {});

// The keys of an answer that offer `version`.
[[nodiscard]] QJsonObject angebot(const QString &version);

// All that the program runs on, each of it scripted: a clock that the test moves, a server that
// answers from two lists, a process table, a desktop and a folder of applications.
struct Testumgebung
{
    // `versionen` are installed; nothing runs, the data folder is empty.
    explicit Testumgebung(const QStringList &versionen = {});

    // The same, with another network.
    [[nodiscard]] Umgebung mitNetz(Transport &anderes);

    // Moves on and runs what becomes due; without an argument only what is due now.
    void vor(double sekunden = 0);

    // What runs: the application (its bundle and so many processes) and its agent.
    void rekordboxLaeuft(bool offen, int haupt, int agent);
    void rekordboxOffen() { rekordboxLaeuft(true, 1, 1); }
    void rekordboxZu() { rekordboxLaeuft(false, 0, 0); }

    // The reasons of all syncs that reached the server, in order.
    [[nodiscard]] QStringList anlaesse() const;
    // The paths of all requests but probes, in order.
    [[nodiscard]] QStringList wege() const;

    // The path of the bundle of an installed version.
    [[nodiscard]] QString buendel(const QString &version) const
    {
        return programme.buendel(version);
    }

    [[nodiscard]] static QStringList protokoll() { return ordner().protokollzeilen(); }
    [[nodiscard]] static Datenordner &ordner();

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
    const Umgebung umgebung{uhr,          netz,         prozesse,     rekordbox,
                            arbeitsplatz, anmeldestart, mitteilungen, statusobjekt};
    Konto konto{QStringLiteral("Mein Mac"),
                QStringLiteral("mac1"),
                QStringLiteral("geheim"),
                {QStringLiteral("http://cloud")}};
};

} // namespace kalvaro
