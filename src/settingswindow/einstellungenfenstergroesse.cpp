// How large the settings sheet is, and what of it is in sight.

#include "settingswindow/baumansicht.h"
#include "settingswindow/blattmasse.h"
#include "settingswindow/einstellungenfenster.h"
#include "ui/beschriftung.h"
#include "ui/fensterplatz.h"
#include "ui/schrift.h"

#include <QEvent>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>

namespace kalvaro {

using namespace blattmasse;

namespace {

constexpr int enger = 7;       // what each gap gives up where the screen is low
constexpr int vieleZeilen = 4; // of the tree; with fewer the gaps give way
constexpr int wenigeZeilen = 3;

} // namespace

// Once all parts are there. Only fonts tell when the screen is too low for the usual gaps, so that
// no message moves anything.
void EinstellungenFenster::groesseFestlegen()
{
    abstaendeSetzen(false);
    baum_->setFixedHeight(baum_->hoeheFuer(vieleZeilen));
    const int breite = mass(fensterbreite);
    ueblicheHoehe_ = eingaben_->layout()->totalHeightForWidth(breite) +
                     fuss_->layout()->totalHeightForWidth(breite);
    groesseAnpassen();
}

void EinstellungenFenster::abstaendeSetzen(bool eng)
{
    const int weniger = eng ? enger : 0;
    eingaben_->layout()->setContentsMargins(rand, oberrand - weniger, rand, 0);
    eingaben_->layout()->setSpacing(abstand - weniger);
    fuss_->layout()->setContentsMargins(rand, abstand - weniger, rand, unterrand - weniger);
    fuss_->layout()->setSpacing(abstand - weniger);
    eng_ = eng;
}

// As large as the content, up to the screen. Where that is too low, first the tree gets lower, then
// the gaps, then all that stands above the line and the buttons scrolls. Where fewer than three
// rows are in sight, none of them is cut.
void EinstellungenFenster::groesseAnpassen()
{
    const QSize vorher = size();
    const QSize platz = platz_ = fensterplatz(*this);
    if (const bool eng = platz.height() < ueblicheHoehe_; eng != eng_) {
        abstaendeSetzen(eng);
    }
    const int breite = std::min(mass(fensterbreite), platz.width());
    // A long message leaves room for what it is about.
    const int zeilen = platz.height() / 3 / std::max(1, lblInfo_->minimumSizeHint().height());
    lblInfo_->setUmbruch(breite - 2 * rand, std::clamp(zeilen, 2, 12));
    const int unten = fuss_->layout()->totalHeightForWidth(breite);
    const int hoechstens = platz.height() - unten;
    const auto oben = [this](int wie) {
        return eingaben_->layout()->totalHeightForWidth(wie) - baum_->minimumHeight();
    };
    const int mindestens =
        baum_->hoeheFuer(std::clamp(baum_->zeilenIn(hoechstens), 1, wenigeZeilen));
    const int baum = std::clamp(hoechstens - oben(breite), mindestens, mass(baumhoehe));
    const bool rollt = oben(breite) + baum > hoechstens;
    const int balken = rollt ? rollbereich_->verticalScrollBar()->sizeHint().width() : 0;
    const int aussen = std::min(breite + balken, platz.width());
    const int bisBaum = oben(aussen - balken);
    int inhalt = std::min(bisBaum + baum, hoechstens);
    if (inhalt > bisBaum && baum_->zeilenIn(inhalt - bisBaum) < wenigeZeilen) {
        const int ganze = baum_->zeilenIn(inhalt - bisBaum);
        inhalt = bisBaum + (ganze > 0 ? baum_->hoeheFuer(ganze) - baum_->frameWidth() : 0);
    }
    baum_->setFixedHeight(baum);
    // In line with what stands above it, left of the scroll bar.
    QMargins fussrand = fuss_->layout()->contentsMargins();
    fussrand.setRight(rand + balken);
    fuss_->layout()->setContentsMargins(fussrand);
    setFixedSize(aussen, inhalt + unten);
    if (isVisible() && size().boundedTo(vorher) != size()) {
        hereinruecken(*this);
    }
}

bool EinstellungenFenster::event(QEvent *event)
{
    const bool ergebnis = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        groesseAnpassen();
    } else if (event->type() == QEvent::Show) {
        groesseAnpassen();
        hereinruecken(*this);
    }
    return ergebnis;
}

// How wide the frame is turns out after the sheet has been shown, and anew on another screen.
void EinstellungenFenster::moveEvent(QMoveEvent *event)
{
    QDialog::moveEvent(event);
    if (isVisible() && platz_ != fensterplatz(*this)) {
        groesseAnpassen();
    }
}

// Scrolls the sheet so far that all of `teil` can be seen; the tree with its frame and all its
// rows.
void EinstellungenFenster::inSichtRollen(const QWidget &teil)
{
    const QRect ort(teil.mapTo(eingaben_, QPoint()), teil.size());
    rollbereich_->ensureVisible(ort.center().x(), ort.center().y(), 0, ort.height() / 2 + 1);
}

} // namespace kalvaro
