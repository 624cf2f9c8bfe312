#pragma once

#include "assessment/bewertung.h"
#include "foundation/uhr.h"
#include "mainwindow/treiber.h"
#include "rekordbox/installation.h"

#include <QList>
#include <QPointer>
#include <QWidget>

class QAction;
class QMenuBar;

namespace kalvaro {

class Anmeldestart;
class Arbeitsplatz;
class Countdown;
class Einstellungen;
class EinstellungenFenster;
class Grund;
class Haken;
class Rekordbox;
class Startknopf;
class Statuskarte;
class Updatekarte;
class Verweis;
class Zahlenkarte;
class Zentrale;

// What the window needs of the rest; everything must outlive it.
struct Umgebung
{
    Zentrale &zentrale;
    Einstellungen &einst;
    Uhr &uhr;
    const Rekordbox &rekordbox;
    Arbeitsplatz &arbeitsplatz;
    Anmeldestart &anmeldestart;
};

// The one main window: asks for a sync when it opens, shows what came of it and starts rekordbox.
//
// With a driver, syncs pass through it and closing only hides the window. Without one (picture
// mode) the window asks the server itself and closing it ends the program.
//
// rekordbox counts as running for syncs as soon as its agent runs; for the start button only
// rekordbox itself counts.
class Hauptfenster final : public QWidget
{
    Q_OBJECT

public:
    // `bild`: where picture mode writes the picture. `treiber` may be null and may go at any time.
    Hauptfenster(const Umgebung &welt, std::optional<QString> bild, Treiber *treiber);

    // Brings the window forward, optionally with a sync that may start rekordbox afterwards.
    void oeffnen(bool mitAbgleich);

    // Picture mode: shows the window, syncs once, writes the picture and ends the program.
    void starten();

    // Runs a sync. While one runs already `fertig` is called at once and the run is not joined.
    // `autostartErlaubt`: an outcome that allows it may start the countdown.
    void abgleichen(const QString &anlass, bool autostartErlaubt, std::function<void()> fertig);

    void zeige(const QString &art, const QString &titel, const QString &detail);
    void ladenAnzeigen(const QString &titel);
    void anzeigen(const Bewertung &b);
    void ergebnisAnzeigen(const Bewertung &b);
    void rekordboxLaeuftAnzeigen();
    void startKnopfAktualisieren();

    // Hides the window; the program lives on in the menu bar.
    void verstecken();

    // The installation that a start would start.
    [[nodiscard]] std::optional<Installation> gewaehlt() const;

    void countdownStopp();

    // Syncs first, then starts rekordbox if the outcome allows it. Nothing while busy.
    void startenNachAbgleich();

    // A sync or a pre-start check of this window is in progress.
    [[nodiscard]] bool beschaeftigt() const { return beschaeftigt_; }

    // The commands of the main menu; all of them work by their keys as well.
    struct Aktionen
    {
        QAction *ueber = nullptr;
        QAction *ausblenden = nullptr;
        QAction *beenden = nullptr;
        QAction *ablegen = nullptr;
        QAction *schliessen = nullptr;
    };
    [[nodiscard]] const Aktionen &aktionen() const { return aktionen_; }

    // Puts a menu bar above the content. It is no part of a picture.
    void menueleisteSetzen(QMenuBar *leiste);

    // From now on closing the window really closes it: the program is ending.
    void endgueltigSchliessen() { endgueltig_ = true; }

Q_SIGNALS:
    // The user wants to know what this program is.
    void ueberGewuenscht();

    // An outcome is on display.
    void angezeigt(const Bewertung &b);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *objekt, QEvent *event) override;

private:
    void aufbauen();
    void aktionenAnlegen();
    [[nodiscard]] QWidget *kopfzeile() const;
    [[nodiscard]] QWidget *startbereich();
    [[nodiscard]] QWidget *fusszeile();
    void groesseAnpassen();
    void nachVorn();

    void abgeschlossen(const Bewertung &b, bool autostartErlaubt);

    void rekordboxStarten();
    void startpruefungFertig(bool noetig, const std::optional<QString> &hinweis);
    void startenWennErlaubt();
    void rekordboxJetztStarten();
    void autoGeaendert();
    void einstellungenOeffnen();

    // Constant after construction.
    const Umgebung umgebung_;
    const std::optional<QString> bildPfad_;
    const QPointer<Treiber> steuerung_;

    Aktionen aktionen_;
    Grund *ganz_ = nullptr; // the content, as it stands in a picture
    Updatekarte *karteUpdate_ = nullptr;
    Statuskarte *karteStatus_ = nullptr;
    Zahlenkarte *karteZahlen_ = nullptr;
    Startknopf *knStart_ = nullptr;
    Countdown *countdown_ = nullptr;
    Haken *cbAuto_ = nullptr;
    Verweis *lnkAbgleich_ = nullptr;

    QList<Installation> installationen_; // read anew whenever the window comes forward
    std::optional<Bewertung> letzte_;    // the last outcome shown
    bool beschaeftigt_ = false;
    QMetaObject::Connection treiberWeg_; // while a sync of the driver's is awaited
    bool endgueltig_ = false;
    QPointer<EinstellungenFenster> einstellungen_; // the sheet, while it is open
    Weckruf bildVerzug_;
};

} // namespace kalvaro
