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

constexpr int baummindesthoehe = 116; // four rows

} // namespace

// As large as the content, up to the screen. Where that is too low, first the tree gets lower, then
// all that stands above the line and the buttons scrolls.
void EinstellungenFenster::groesseAnpassen()
{
    const QSize vorher = size();
    const QSize platz = platz_ = fensterplatz(*this);
    const int breite = std::min(mass(fensterbreite), platz.width());
    // A long message leaves room for what it is about.
    const int zeilen = platz.height() / 3 / std::max(1, lblInfo_->minimumSizeHint().height());
    lblInfo_->setUmbruch(breite - 2 * rand, std::clamp(zeilen, 2, 12));
    const int unten = fuss_->layout()->totalHeightForWidth(breite);
    const int hoechstens = platz.height() - unten;
    const auto oben = [this](int wie) {
        return eingaben_->layout()->totalHeightForWidth(wie) - baum_->minimumHeight();
    };
    const int baum = std::clamp(hoechstens - oben(breite), mass(baummindesthoehe), mass(baumhoehe));
    const bool rollt = oben(breite) + baum > hoechstens;
    const int balken = rollt ? rollbereich_->verticalScrollBar()->sizeHint().width() : 0;
    const int aussen = std::min(breite + balken, platz.width());
    const int inhalt = oben(aussen - balken) + baum;
    baum_->setFixedHeight(baum);
    // In line with what stands above it, left of the scroll bar.
    fuss_->layout()->setContentsMargins(rand, abstand, rand + balken, unterrand);
    setFixedSize(aussen, std::min(inhalt, hoechstens) + unten);
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

bool EinstellungenFenster::focusNextPrevChild(bool vor)
{
    const bool weiter = QDialog::focusNextPrevChild(vor);
    if (weiter && eingaben_->isAncestorOf(focusWidget())) {
        rollbereich_->ensureWidgetVisible(focusWidget());
    }
    return weiter;
}

} // namespace kalvaro
