#pragma once

#include "rekordbox/installation.h"

#include <QList>
#include <QObject>

#include <optional>

namespace kalvaro {

class Abgleicher;
class Arbeitsplatz;
struct Bewertung;
class Einstellungen;
class Rekordbox;
struct Startpruefung;
class Zentrale;

// How far a start of rekordbox has come.
enum class Startschritt {
    Ruht,
    Fragt,     // whether rekordbox runs already
    Wartet,    // for a sync that was under way already
    Prueft,    // takes the last look at the server
    GleichtAb, // that look has shown that a sync must come first
    Startet,   // the system has been asked to start it
};

// The one way in which rekordbox is started: last look at the server, a sync where one is needed,
// launch. At most one start is under way, and none while a sync runs.
//
// A start from the window is shown there step by step. One from the menu has no face until a sync
// is involved; then it asks for the window and goes on in it.
class Rekordboxstarter final : public QObject
{
    Q_OBJECT

public:
    enum class Herkunft { Fenster, Menue };

    // Everything must outlive this object.
    Rekordboxstarter(Zentrale &zentrale, Abgleicher &abgleicher, const Einstellungen &einst,
                     const Rekordbox &rekordbox, Arbeitsplatz &arbeitsplatz);

    // Nothing happens without an installation, and nothing new while a start is under way; the
    // window then takes over one that had no face.
    void starten(Herkunft herkunft);

    // While the window awaits a sync of its own, a start from the menu that needs one only brings
    // it forward.
    void fensterGleichtAb(bool gleichtAb) { fensterGleichtAb_ = gleichtAb; }

    [[nodiscard]] Startschritt schritt() const { return schritt_; }

    // A start is under way that the window shows.
    [[nodiscard]] bool imFenster() const { return imFenster_; }

    // How often the system has been asked to start rekordbox.
    [[nodiscard]] int starts() const { return starts_; }

    // What is installed, as last read, newest first; and which of it a start would start.
    void installationenLesen();
    [[nodiscard]] const QList<Installation> &installationen() const { return installationen_; }
    [[nodiscard]] std::optional<Installation> gewaehlt() const;

Q_SIGNALS:
    void installationenGelesen();

    // A start that the window shows has come from one step to the next.
    void weiter(Startschritt schritt, Startschritt vorher);

    // What came of the sync that a start in the window waited for.
    void abgeglichen(const Bewertung &b);

    // A sync would have to come first, but rekordbox or its agent runs.
    void belegt();

    // For a start in the window: rekordbox has been asked to start, or ran already.
    void laeuft();

    // For a start in the window: rekordbox could not be started, and why, in German.
    void gescheitert(const QString &grund);

    // What the user should know of the library that rekordbox starts with.
    void hinweis(const QString &text);

    // A start from the menu needs the window from here on.
    void fensterNoetig();

private:
    void gefragt(bool laeuftSchon);
    void pruefen();
    void geprueft(const Startpruefung &p);
    void entscheiden(const Startpruefung &p, bool laeuftSchon);
    void warten();
    void abgleichen();
    void mitAbgleich(Startschritt schritt, void (Rekordboxstarter::*danach)());
    void jetztStarten();
    void ohneStart(bool laeuftSchon);
    void insFenster();
    void nach(Startschritt schritt);

    // Constant after construction.
    Zentrale &zentrale_;
    Abgleicher &abgleicher_;
    const Einstellungen &einst_;
    const Rekordbox &rekordbox_;
    Arbeitsplatz &arbeitsplatz_;

    QList<Installation> installationen_;
    Startschritt schritt_ = Startschritt::Ruht;
    int starts_ = 0;
    bool imFenster_ = false; // only between Fragt and GleichtAb
    bool fensterGleichtAb_ = false;
};

} // namespace kalvaro
