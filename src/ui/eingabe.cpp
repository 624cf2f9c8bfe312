#include "ui/eingabe.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QStyle>

namespace kalvaro {

namespace {

bool wieAufDemMac(const QWidget &fenster)
{
    return fenster.style()->styleHint(QStyle::SH_DialogButtonLayout, nullptr, &fenster) ==
           QDialogButtonBox::MacLayout;
}

} // namespace

Eingabe::Eingabe(QWidget &fenster, QAbstractButton &vorgabe)
    : QObject(&fenster)
    , fenster_(fenster)
    , vorgabe_(vorgabe)
{
    fenster.installEventFilter(this);
    const auto teile = fenster.findChildren<QWidget *>();
    for (QWidget *const teil : teile) {
        // The list that a pop-up button opens is a window of its own.
        if (teil->focusPolicy() != Qt::NoFocus && teil->window() == fenster.window()) {
            teil->installEventFilter(this);
        }
    }
}

// Before the widgets see it: whether Return presses a button or ticks a box is a setting of each
// desktop to them.
bool Eingabe::eventFilter(QObject *objekt, QEvent *event)
{
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto *const taste = static_cast<QKeyEvent *>(event);
    switch (taste->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (QAbstractButton *const knopf = gemeint(objekt);
            knopf != nullptr && !taste->isAutoRepeat()) {
            knopf->click();
        }
        return true;
    case Qt::Key_Escape:
        return taste->isAutoRepeat(); // held since it closed a list or a menu
    default:
        return false;
    }
}

QAbstractButton *Eingabe::gemeint(QObject *ort) const
{
    auto *const knopf = qobject_cast<QPushButton *>(ort);
    if (knopf != nullptr && !wieAufDemMac(fenster_)) {
        return knopf;
    }
    return fenster_.focusWidget() == &fenster_ ? nullptr : &vorgabe_;
}

} // namespace kalvaro
