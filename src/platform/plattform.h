#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace kalvaro {

class Anmeldestart;
class Arbeitsplatz;
class Einzelinstanz;
class Farbschema;
class Mitteilungen;
class Prozesse;
class Schreibtischauskunft;
class Statusobjekt;
class Uhr;

// What must be settled before the application object exists, because Qt then takes it over.
class Startlage
{
public:
    // What is drawn: in the colours that the desktop wants, or in our own light ones.
    enum class Farben { Desktop, Eigene };

    // `plattform` is the toolkit's platform that the command line asks for; empty without one.
    // Asks the display whether it answers, for some seconds at most. The desktop is asked for its
    // colours so early that the answer is usually there before anything is drawn.
    Startlage(const QString &plattform, Farben farben);
    ~Startlage();
    Startlage(const Startlage &) = delete;
    Startlage &operator=(const Startlage &) = delete;

    // Why nothing can be shown here, in German; absent when something can. The application object
    // then draws where nobody sees it.
    [[nodiscard]] const std::optional<QString> &anzeigemangel() const;

private:
    friend class Plattform;
    struct Innen;
    const std::unique_ptr<Innen> innen_;
};

// The system that the program runs on: hands out one adapter for each port. Each system has a
// folder of its own that implements both classes; nobody else knows which of them is built.
class Plattform
{
public:
    // Needs the application object. Both must outlive this one.
    Plattform(const Startlage &startlage, Uhr &uhr);
    ~Plattform();
    Plattform(const Plattform &) = delete;
    Plattform &operator=(const Plattform &) = delete;

    [[nodiscard]] Einzelinstanz &einzelinstanz();

    // Made at the first call, which may wait for the desktop's answer until 100 ms after the
    // question.
    [[nodiscard]] Farbschema &farbschema();

    struct Anschluesse
    {
        const Prozesse &prozesse;
        Arbeitsplatz &arbeitsplatz;
        Anmeldestart &anmeldestart;
        Mitteilungen &mitteilungen;
        Statusobjekt &statusobjekt;
    };
    // Made at the first call: a second start of the program needs none of them. The only instance
    // then also clears away what killed ones left behind.
    [[nodiscard]] Anschluesse anschluesse();

    // Calls `enden`, from the event loop, when the system wants the program to end. From the end
    // of the event loop on the process lasts 0.7 s at the longest, whatever it still waits for: the
    // look-up of a host name cannot be cancelled.
    void beiEnde(std::function<void()> enden);

private:
    struct Geraete;
    struct Innen;
    const std::unique_ptr<Innen> innen_;
};

// The same system for the check-up, which only looks: it takes no name, shows nothing, listens to
// nothing and needs no display.
class Rechnerauskunft
{
public:
    // Needs a QCoreApplication.
    Rechnerauskunft();
    ~Rechnerauskunft();
    Rechnerauskunft(const Rechnerauskunft &) = delete;
    Rechnerauskunft &operator=(const Rechnerauskunft &) = delete;

    [[nodiscard]] const Prozesse &prozesse() const;
    [[nodiscard]] const Schreibtischauskunft &schreibtisch() const;

    // Leaves the event loop with `status`. The process lasts 0.7 s at the longest from then on, and
    // ends with that status also where it has to be forced (see Plattform::beiEnde()).
    static void enden(int status);

private:
    struct Innen;
    const std::unique_ptr<Innen> innen_;
};

} // namespace kalvaro
