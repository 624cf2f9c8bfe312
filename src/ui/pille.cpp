#include "ui/pille.h"

#include "ui/schrift.h"
#include "ui/stilteile.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>

namespace kalvaro {

Pille::Pille(QWidget *parent)
    : QWidget(parent)
    , label_(beschriftung({}, 11, QFont::DemiBold))
{
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(mass(10), mass(4), mass(10), mass(4));
    layout->addWidget(label_);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();
}

void Pille::setzen(const QString &inhalt, Farbton schrift, Farbton grund)
{
    label_->textSetzen(inhalt);
    label_->setFarbe(schrift);
    fuellung_ = grund;
    grundErneuern();
    setVisible(!inhalt.isEmpty());
    update();
}

void Pille::setUnterlage(const QColor &unterlage)
{
    unterlage_ = unterlage;
    grundErneuern();
}

void Pille::grundErneuern()
{
    const QColor hinten = unterlage_.isValid() ? unterlage_ : Farbe::fenster(palette());
    label_->setGrund(Farbe::ueber(fuellung_(palette()), hinten));
}

void Pille::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        grundErneuern();
    }
}

void Pille::paintEvent(QPaintEvent *)
{
    QPainter maler(this);
    rundMalen(maler, rect(), mass(11), fuellung_(palette()));
}

} // namespace kalvaro
