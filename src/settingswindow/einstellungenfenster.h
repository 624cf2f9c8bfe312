#pragma once

#include "rekordbox/installation.h"
#include "server/zentrale.h"
#include "settingswindow/knotenliste.h"
#include "ui/farbe.h"

#include <QDialog>
#include <QPointer>

#include <vector>

class QComboBox;
class QLineEdit;
class QPushButton;
class QScrollArea;

namespace kalvaro {

class Anmeldestart;
class Baumansicht;
class Beschriftung;
class Einstellungen;
class Haken;
class PlaylistenModell;

// The settings sheet: which playlists the server copies onto this Mac, which rekordbox is started,
// and the start options. Made anew for each opening: open() shows it on its parent window, then
// laden() fetches the playlists. It ends with 1 (saved) or 0; closing it means "Abbrechen".
//
// Saving keeps the start options at once and asks the server only where the choice of playlists
// changed; when the server refuses, the sheet stays open and the options stay kept.
class EinstellungenFenster final : public QDialog
{
    Q_OBJECT

public:
    struct Vorgaben
    {
        Zentrale &zentrale;
        Einstellungen &einst;
        Anmeldestart &anmeldestart;
        QList<Installation> installationen; // newest first
        QString betrieb;                    // the server's mode as last heard; "": not heard yet
    };

    // What `vorgaben` refers to must outlive the sheet.
    EinstellungenFenster(Vorgaben vorgaben, QWidget *eltern);
    ~EinstellungenFenster() override;

    // Fetches the tree of playlists. Does nothing while that is under way or after it succeeded.
    void laden();

    // Rewrites the line below the tree.
    void zusammenfassen();

    // Keeps the options, transfers the choice of playlists if it changed, and ends with 1.
    void sichern();

    // Ends with 0. A transfer under way is not waited for.
    void abbrechen();

    void reject() override { abbrechen(); }
    void done(int ergebnis) override;

protected:
    bool event(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    enum class Zustand { Neu, Laedt, Geladen, Ladefehler, Sichert, Beendet };

    void aufbauen();
    [[nodiscard]] QWidget *versionszeile();
    [[nodiscard]] QWidget *optionen();
    [[nodiscard]] QWidget *listenkopf();
    [[nodiscard]] QWidget *tastenzeile();
    void baumAufbauen();
    void tabfolge();
    void groesseFestlegen();
    void groesseAnpassen();
    void abstaendeSetzen(bool eng);
    void inSichtRollen(const QWidget &teil);

    void geladen(tl::expected<Knotenliste, ZentraleFehler> antwort);
    void optionenSichern();
    void auswahlSenden();
    void auswahlBeantwortet(const tl::expected<bool, ZentraleFehler> &antwort, qsizetype anzahl);
    void melden(const QString &meldung, Farbton farbe);
    void klagen(const QString &meldung);
    void eingabenSperren(bool sperren);
    bool eventFilter(QObject *objekt, QEvent *event) override;

    const Vorgaben vorgaben_;
    Zustand zustand_ = Zustand::Neu;
    std::vector<bool> vorher_; // the choice as loaded

    PlaylistenModell *const modell_;
    QWidget *const eingaben_; // everything but the buttons and the line above them
    QComboBox *const popVersion_;
    Haken *const cbAuto_;
    Haken *const cbAnmeldung_;
    QLineEdit *const suchfeld_;
    Baumansicht *const baum_;
    Beschriftung *const lblInfo_;
    QPushButton *const knAbbrechen_;
    QPushButton *const knSichern_;
    QPointer<QWidget> vorSperre_; // had the keyboard when the inputs were locked

    QScrollArea *const rollbereich_; // scrolls the inputs where the screen is low
    QWidget *const fuss_;            // what is always to be seen: the line and the buttons
    QSize platz_;                    // on the screen, as it was taken into account
    int ueblicheHoehe_ = 0;          // with a low tree and the usual gaps
    bool eng_ = false;               // the gaps are smaller
};

} // namespace kalvaro
