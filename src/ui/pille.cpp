#include "ui/pille.h"

#include "ui/schrift.h"
#include "ui/stilteile.h"

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
    setVisible(!inhalt.isEmpty());
    update();
}

QColor Pille::grundfarbe() const
{
    return Farbe::ueber(fuellung_(palette()), untergrund(*this));
}

void Pille::paintEvent(QPaintEvent *)
{
    QPainter maler(this);
    rundMalen(maler, rect(), mass(11), fuellung_(palette()));
}

} // namespace kalvaro
