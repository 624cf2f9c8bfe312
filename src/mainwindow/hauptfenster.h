#pragma once

#include "ablauf/rekordboxstarter.h"
#include "assessment/anlass.h"
#include "assessment/bewertung.h"
#include "foundation/uhr.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class QAction;
class QMenuBar;
class QMessageBox;
class QScrollArea;

namespace kalvaro {

struct Ablauf;
class Countdown;
class EinstellungenFenster;
class Grund;
class Haken;
class Startknopf;
class Statuskarte;
class Updatekarte;
class Verweis;
class Zahlenkarte;

// What becomes of the window when it goes away.
enum class Verbleib {
    Menueleiste, // it hides, and the program lives on in the menu bar
    Allein,      // picture mode: it only minimises, and closing it ends the program
};

// The one main window: asks for a sync when it opens, shows what came of it and starts rekordbox.
//
// rekordbox counts as running for syncs as soon as its agent runs; for the start button only
// rekordbox itself counts.
class Hauptfenster final : public QWidget
{
    Q_OBJECT

public:
    // `ablauf` must outlive the window. `bild`: where starten() writes the picture.
    Hauptfenster(Ablauf &ablauf, Verbleib verbleib, std::optional<QString> bild = {});

    // Brings the window forward, optionally with a sync that may start rekordbox afterwards.
    void oeffnen(bool mitAbgleich);

    // Picture mode: shows the window, syncs once, writes the picture and ends the program.
    void starten();

    // Shows what came of a sync that others asked for.
    void ergebnisAnzeigen(const Bewertung &b);

    // Puts the window away, and with it a sheet that is open on it: it hides, or, where no bar
    // shows the status item that brings it back, it minimises.
    void verstecken();

    // Minimises a window that is hidden: the bar that could bring it back is gone.
    void auffindbarMachen();

    // Whether the user has it open. It may be minimised, unless it is because it was put away.
    [[nodiscard]] bool offen() const { return isVisible() && !abgelegt_; }

    // From now on closing the window really closes it: the program is ending.
    void endgueltigSchliessen() { endgueltig_ = true; }

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

Q_SIGNALS:
    // The user wants to know what this program is.
    void ueberGewuenscht();

    // The user wants the program to end.
    void beendenGewuenscht();

    // The window was put away and lies minimised, for want of a bar.
    void abgelegt();

    // The opening or the picture's sync, or one for a start, is over and on display, or there was
    // none because rekordbox runs.
    void angezeigt(const QString &titel, const QString &detail);

protected:
    void showEvent(QShowEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *objekt, QEvent *event) override;

private:
    // How it is built.
    void aufbauen();
    void aktionenAnlegen();
    [[nodiscard]] QWidget *kopfzeile() const;
    [[nodiscard]] QWidget *startbereich();
    [[nodiscard]] QWidget *fusszeile();
    [[nodiscard]] QSize verfuegbar() const;
    void groesseAnpassen();
    void knappHalten(int breite, int platz);
    void inDieMitte();
    void vorzeigen(const QList<QWidget *> &teile);
    void hinrollen();
    void nachVorn();
    void fokusZumStartknopf();
    void ablegen();

    // Syncs and what they come to.
    void abgleichen(Anlass anlass, bool autostartErlaubt);
    void abgleichBeginnen(Anlass anlass, bool autostartErlaubt);
    void abgeschlossen(const Bewertung &b, bool autostartErlaubt);
    void countdownStarten();
    void countdownStoppen();
    void countdownErledigen();
    void ladenAnzeigen(const QString &titel);
    void anzeigen(const Bewertung &b);
    void gleichtAbSetzen(bool gleichtAb);
    [[nodiscard]] bool beschaeftigt() const;
    [[nodiscard]] bool verdeckt() const;
    void beschaeftigtZeigen();

    // The start of rekordbox.
    void startVerfolgen();
    void rekordboxStarten();
    void startZeigen(Startschritt schritt, Startschritt vorher);
    void gestartet();
    void rekordboxLaeuftAnzeigen();
    void startKnopfAktualisieren();
    void startKnopfZeigen(bool laeuft);
    void startKnopfSperren(bool sperren);
    void autoGeaendert();

    void einstellungenOeffnen();

    // Constant after construction.
    Ablauf &ablauf_;
    const Verbleib verbleib_;
    const std::optional<QString> bildPfad_;

    Aktionen aktionen_;
    QScrollArea *rollbereich_ = nullptr;
    Grund *ganz_ = nullptr; // the content, as it stands in a picture
    Updatekarte *karteUpdate_ = nullptr;
    Statuskarte *karteStatus_ = nullptr;
    Zahlenkarte *karteZahlen_ = nullptr;
    Startknopf *knStart_ = nullptr;
    Countdown *countdown_ = nullptr;
    Haken *cbAuto_ = nullptr;
    Verweis *lnkAbgleich_ = nullptr;

    std::optional<Bewertung> letzte_; // the last outcome shown
    bool gleichtAb_ = false; // a sync of this window's own is awaited, or asked whether it may
    std::unique_ptr<QObject> knopffrage_;     // what the start button shows is being asked
    std::unique_ptr<QObject> countdownfrage_; // whether a countdown may start is being asked
    bool endgueltig_ = false;
    bool abgelegt_ = false;                        // put away, but minimised: see verstecken()
    Weckruf rueckkehr_;                            // the desktop may just be bringing it back
    QPointer<EinstellungenFenster> einstellungen_; // the sheet, while it is open
    QPointer<QMessageBox> startfehler_;            // why rekordbox did not start, while it is shown
    Weckruf bildVerzug_;

    // Where it stands, and what of it is to be seen.
    std::optional<QPoint> mitte_;  // where the frame was put, once it has been shown
    QSize platz_;                  // on the screen, as it was taken into account
    QList<QWidget *> vorzuzeigen_; // is to be scrolled into view with the next layout
};

} // namespace kalvaro
