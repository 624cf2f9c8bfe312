#pragma once

#include "controller/steuerung.h"
#include "doubles/fakeanmeldestart.h"
#include "doubles/fakemitteilungen.h"
#include "doubles/fakestatusobjekt.h"
#include "doubles/testuhr.h"
#include "foundation/einmalruf.h"
#include "gesetze.h"
#include "platform/arbeitsplatz.h"
#include "rekordbox/rekordbox.h"
#include "simulationsnetz.h"

#include <memory>
#include <optional>
#include <random>

class QAbstractButton;
class QDialog;

namespace kalvaro {

// A process table with nothing but rekordbox in it. It counts when it is asked, and often takes its
// time to tell.
class Simulationsprozesse final : public Prozesse
{
public:
    static constexpr std::chrono::seconds spaeteste{2};

    explicit Simulationsprozesse(Uhr &uhr)
        : uhr_(uhr)
    {
    }

    void anzahl(const QString &name, QObject *besitzer, Zahlruf fertig) const override;
    [[nodiscard]] QStringList buendel() const override;

    // Questions that have no answer yet.
    [[nodiscard]] int offene() const { return offene_; }

    int haupt = 0;
    int agent = 0;
    bool offen = false; // the application has its bundle open
    bool puenktlich = false;

private:
    class Frage;

    Uhr &uhr_;
    mutable std::mt19937_64 zufall_; // the same one in each world, so a history can be replayed
    mutable int offene_ = 0;
};

// A desktop on which what is started comes up, or fails, only when the test says so.
class Simulationsplatz final : public Arbeitsplatz
{
public:
    using Fehler = std::optional<QString>;

    void starten(const QString &buendel, QObject *besitzer,
                 std::function<void(Fehler)> fertig) override;
    void oeffnen(const QUrl &) override {}
    void beiAufwachen(std::function<void()> ruf) override { geweckt = std::move(ruf); }
    void nachVorn(QWindow & /*fenster*/) override {}
    void auftreten(Auftritt) override {}

    [[nodiscard]] bool startUnterwegs() const { return start != nullptr; }
    void starten(const Fehler &ausgang);

    std::function<void()> vorStart;
    std::function<void()> geweckt;

private:
    Einmalruf<Fehler> *start = nullptr;
};

// What the user does in the settings sheet.
enum class Blatt { Autostart, Playliste, Sichern, Abbrechen };

// The whole program, with everything around it: user, rekordbox, servers and time. What happens is
// told to its laws at once.
class Welt
{
public:
    Welt();
    Welt(const Welt &) = delete;
    Welt &operator=(const Welt &) = delete;
    ~Welt();

    // To be called once in a program, before the first world.
    static void vorbereiten();

    // What became of a history.
    struct Bilanz
    {
        std::optional<QString> verstoss; // the law that was broken
        int abgleiche = 0;
        int starts = 0;
        int countdowns = 0;  // that came to their end
        int versprechen = 0; // that were given

        Bilanz &operator+=(const Bilanz &weitere);
    };

    // Runs a history, up to the breach of a law, and comes to rest. `mitschrift` gets each line
    // with what it led to.
    static Bilanz durchlaufen(const std::vector<int> &verlauf, QStringList *mitschrift = nullptr);

    // What can happen (see alleEreignisse).
    void beginnen(int wie);
    void sekunden(int wieviele);
    void antworten(int ausgang);
    void spaetesteAntworten(int ausgang);
    void laune(int ausgang);
    void server1(int zustand) { netz.server(0, static_cast<Simulationsnetz::Server>(zustand)); }
    void server2(int zustand) { netz.server(1, static_cast<Simulationsnetz::Server>(zustand)); }
    void server3(int zustand) { netz.server(2, static_cast<Simulationsnetz::Server>(zustand)); }
    void rekordboxKommt(int);
    void startScheitert(int);
    void rekordboxGeht(int agenten);
    void agentGeht(int);
    void agentKommt(int);
    void menue(int zeile);
    void knopf(int welcher);
    void fensterSchliessen(int);
    void fensterAblegen(int);
    void einstellungenOeffnen(int);
    void blatt(int was);
    void hinweisSchliessen(int);
    void zweiterStart(int);
    void aufwachen(int);
    void uhrStellen(int stunden);
    void abgleichErbitten(int);

    // What its laws look at.
    Testuhr uhr{postAbarbeiten};
    Simulationsnetz netz{uhr};
    Simulationsprozesse prozesse{uhr};
    Simulationsplatz platz;
    FakeAnmeldestart anmeldestart;
    FakeMitteilungen mitteilungen;
    FakeStatusobjekt statusobjekt;
    const Rekordbox rekordbox;
    std::unique_ptr<Ablauf> ablauf;
    std::unique_ptr<Steuerung> steuerung;
    int erbeten = 0; // syncs asked for by somebody else, and the answers to that
    int beantwortet = 0;
    int doppelt = 0;

    // The settings sheet, while it is open.
    [[nodiscard]] QDialog *einstellungen() const;

    // What a reader of a history wants to know.
    [[nodiscard]] QString lage() const;

private:
    void geschehen(int nummer);
    void zurRuhe();
    [[nodiscard]] Bilanz bilanz() const;
    void rekordboxSetzen(int haupt, int agent, bool offen);
    [[nodiscard]] QAbstractButton *knopf(const QString &name) const;

    Gesetze gesetze{*this};
};

} // namespace kalvaro
