#pragma once

#include "doubles/kindprogramm.h"
#include "doubles/mitteilung.h"
#include "doubles/testuhr.h"
#include "foundation/farbwunsch.h"
#include "vertrag.h"

#include <QList>
#include <QUrl>

#include <optional>

class QObject;

namespace kalvaro {

class Anmeldestart;
class Arbeitsplatz;
class Farbschema;
class Mitteilungen;
class Prozesse;
class Schreibtischauskunft;
class Statusobjekt;

struct Anmeldestartpruefling : Pruefling
{
    [[nodiscard]] virtual Anmeldestart &start() = 0;

    // The file; absent where there is none, and then nothing is logged either.
    [[nodiscard]] virtual std::optional<QString> datei() const { return {}; }

    // From now on it cannot be switched on.
    virtual void verhindern() = 0;
};

struct Arbeitsplatzpruefling : Pruefling
{
    [[nodiscard]] virtual Arbeitsplatz &arbeitsplatz() = 0;

    // The path of a bundle whose next start goes well, or fails.
    [[nodiscard]] virtual QString gutes() = 0;
    [[nodiscard]] virtual QString kaputtes() = 0;

    // How often the good one has started.
    [[nodiscard]] virtual int starts() const = 0;

    // What the browser has got.
    [[nodiscard]] virtual QList<QUrl> geoeffnet() const = 0;

    // The computer has woken. Whoever begins to listen may miss the first of them.
    virtual void wecken() = 0;
};

struct Einzelinstanzpruefling : Pruefling
{
    // Starts einzelinstanzprogramm.cpp.
    [[nodiscard]] virtual std::unique_ptr<Kindprogramm>
    start(const QStringList &argumente) const = 0;

    // Has the place, and takes nothing; calls `gefragt` when somebody wants something.
    [[nodiscard]] virtual std::unique_ptr<QObject> besetzt(std::function<void()> gefragt) const = 0;
};

struct Endepruefling : Pruefling
{
    // Listens until the answer is let go.
    [[nodiscard]] virtual std::shared_ptr<void> hoeren(std::function<void()> ende) const = 0;
    [[nodiscard]] virtual bool wartet() const = 0;

    virtual void spaetestensEnden(int millisekunden, int status) const = 0;
};

struct Farbpruefling : Pruefling
{
    [[nodiscard]] virtual Farbschema &schema() = 0;

    // The desktop wants this one from now on, and says so.
    virtual void wechseln(Helligkeit helligkeit) = 0;
};

struct Mitteilungspruefling : Pruefling
{
    [[nodiscard]] virtual Mitteilungen &mitteilungen() = 0;

    // What was posted so far; without targets where the service does not hold them.
    [[nodiscard]] virtual QList<Mitteilung> gezeigt() const = 0;

    virtual void klicken(qsizetype nummer) = 0;

    // From now on none is taken; false where that cannot be.
    [[nodiscard]] virtual bool verweigern() = 0;
};

struct Prozesspruefling : Pruefling
{
    [[nodiscard]] virtual const Prozesse &prozesse() const = 0;

    // So many processes of that name run.
    virtual void laufen(const QString &name, int anzahl) = 0;

    // Applications run from these bundles, from each of them twice.
    virtual void buendel(const QStringList &orte) = 0;

    // From now on nobody counts, or never answers; false where that cannot be.
    [[nodiscard]] virtual bool ohneZaehlung() = 0;
    [[nodiscard]] virtual bool zaehlungHaengt() = 0;

    Testuhr uhr;
};

struct Schreibtischpruefling : Pruefling
{
    [[nodiscard]] virtual const Schreibtischauskunft &auskunft() const = 0;

    // The file that is to start the program at login, and that switches on the start of `programm`.
    [[nodiscard]] virtual QString datei() const = 0;
    virtual void anschalten(const QString &programm) = 0;

    // As the user does it with the system's own means; the file stays. Names the line.
    [[nodiscard]] virtual QString abschalten() = 0;
};

struct Statuspruefling : Pruefling
{
    [[nodiscard]] virtual Statusobjekt &objekt() = 0;

    // What the bar shows.
    [[nodiscard]] virtual bool sichtbar() = 0;
    [[nodiscard]] virtual QString hinweis() = 0;

    // As the user does it, up to the moment before it shows.
    virtual void menueOeffnen() = 0;

    // The bar comes or goes; false where it is always there.
    [[nodiscard]] virtual bool leiste(bool da) = 0;
};

} // namespace kalvaro
