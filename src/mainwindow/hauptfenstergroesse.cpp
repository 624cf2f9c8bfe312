// How large the main window is, where it stands, and what of it is to be seen.

#include "mainwindow/hauptfenster.h"

#include "mainwindow/statuskarte.h"
#include "ui/fensterplatz.h"
#include "ui/karte.h"
#include "ui/schrift.h"

#include <QLayout>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QShowEvent>

namespace kalvaro {

namespace {

constexpr int fensterbreite = 520;

} // namespace

// A picture shows all of it, however small the screen that it is drawn on.
QSize Hauptfenster::verfuegbar() const
{
    return bildPfad_ ? QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX) : fensterplatz(*this);
}

// As large as the content; higher than the screen it scrolls inside. Not while it is minimised: on
// X11 Qt maps a window to which it gives a size or place, and that brings it back.
void Hauptfenster::groesseAnpassen()
{
    if (isMinimized()) {
        return;
    }
    // How wide the frame is turns out after the window has been shown.
    const bool neuMittig = isVisible() && mitte_ == pos() && platz_ != verfuegbar();
    const QSize vorher = size();
    platz_ = verfuegbar();
    const QWidget *const leisteOben = layout()->menuBar();
    const int menue = leisteOben != nullptr ? leisteOben->sizeHint().height() : 0;
    const QSize platz = platz_ - QSize(0, menue);
    const auto breiteNeben = [&](int rollbalken) {
        return std::max(ganz_->layout()->totalMinimumSize().width(),
                        std::min(mass(fensterbreite), platz.width() - rollbalken));
    };
    knappHalten(breiteNeben(0), platz.height());
    const bool rollt = ganz_->layout()->totalHeightForWidth(breiteNeben(0)) > platz.height();
    const int balken = rollt ? rollbereich_->verticalScrollBar()->sizeHint().width() : 0;
    const int breite = breiteNeben(balken);
    const int inhalt = ganz_->layout()->totalHeightForWidth(breite);
    setFixedSize(breite + balken, menue + std::min(inhalt, platz.height()));
    if (neuMittig) {
        inDieMitte();
    } else if (isVisible() && size().boundedTo(vorher) != size()) {
        hereinruecken(*this);
    }
    if (!vorzuzeigen_.isEmpty()) {
        // Once the content has taken its new places.
        QMetaObject::invokeMethod(this, &Hauptfenster::hinrollen, Qt::QueuedConnection);
    }
}

// Before anything scrolls, the status card gives up what it keeps free for longer texts.
void Hauptfenster::knappHalten(int breite, int platz)
{
    const QMargins rand = ganz_->layout()->contentsMargins();
    const int gespart =
        karteStatus_->knapp() ? karteStatus_->ersparnis(breite - rand.left() - rand.right()) : 0;
    const bool knapp = ganz_->layout()->totalHeightForWidth(breite) + gespart > platz;
    if (knapp != karteStatus_->knapp()) {
        karteStatus_->setKnapp(knapp);
    }
}

void Hauptfenster::inDieMitte()
{
    mittigSetzen(*this);
    mitte_ = pos();
}

void Hauptfenster::showEvent(QShowEvent *event)
{
    if (!event->spontaneous()) {
        groesseAnpassen();
    }
    QWidget::showEvent(event);
}

void Hauptfenster::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    if (isVisible() && platz_ != verfuegbar()) {
        groesseAnpassen();
    }
}

// Scrolls to what has just appeared and matters now. When not all of it fits, the lower end counts.
void Hauptfenster::vorzeigen(const QList<QWidget *> &teile)
{
    vorzuzeigen_ = teile;
}

void Hauptfenster::hinrollen()
{
    constexpr int rand = 14;
    if (vorzuzeigen_.isEmpty()) {
        return;
    }
    QRect ort;
    for (const QWidget *teil : std::as_const(vorzuzeigen_)) {
        ort |= QRect(teil->mapTo(ganz_, QPoint()), teil->size());
    }
    vorzuzeigen_.clear();
    QScrollBar *const balken = rollbereich_->verticalScrollBar();
    const int hoehe = rollbereich_->viewport()->height();
    const int oben = std::min(balken->value(), ort.top() - rand);
    balken->setValue(std::max(oben, ort.bottom() + 1 + rand - hoehe));
}

} // namespace kalvaro
