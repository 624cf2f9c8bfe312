#include "ui/rad.h"

#include "ui/erscheinung.h"
#include "ui/farbe.h"
#include "ui/unterlage.h"

#include <QPainter>

namespace kalvaro {

namespace {

constexpr int bilderJeSekunde = 30;
constexpr int schritt = 360 / bilderJeSekunde;

} // namespace

Rad::Rad(Uhr &uhr, QWidget *parent)
    : QWidget(parent)
    , uhr_(uhr)
{
}

void Rad::drehen()
{
    dreht_ = true;
    taktErneuern();
}

void Rad::anhalten()
{
    dreht_ = false;
    taktErneuern();
}

void Rad::taktErneuern()
{
    if (!dreht_ || !isVisible() || wenigerBewegung()) {
        takt_.reset();
    } else if (!takt_) {
        takt_ = uhr_.alle(Sekunden(1.0 / bilderJeSekunde), [this] {
            stellung_ = (stellung_ + schritt) % 360;
            update();
        });
    }
}

void Rad::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    taktErneuern();
}

void Rad::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    taktErneuern();
}

void Rad::paintEvent(QPaintEvent *)
{
    const double seite = std::min(width(), height());
    const double strich = seite * 0.09;
    const QRectF kreis = QRectF((width() - seite) / 2, (height() - seite) / 2, seite, seite)
                             .adjusted(4, 4, -4, -4)
                             .adjusted(strich / 2, strich / 2, -strich / 2, -strich / 2);
    QPainter maler(this);
    maler.setRenderHint(QPainter::Antialiasing);
    const QColor grund = untergrund(*this);
    QColor farbe = Farbe::auf(grund, Farbe::schrift, palette());
    farbe.setAlphaF(0.13F);
    maler.setPen(QPen(farbe, strich));
    maler.drawEllipse(kreis);
    farbe.setAlphaF(0.45F);
    farbe = Farbe::lesbar(Farbe::ueber(farbe, grund), grund, Farbe::erkennbarerKontrast);

    // A quarter that fades towards its tail.
    constexpr int stuecke = 12;
    constexpr int bogen = 100;
    for (int i = 0; i < stuecke; ++i) {
        farbe.setAlphaF(float(i + 1) / stuecke);
        maler.setPen(QPen(farbe, strich, Qt::SolidLine, Qt::FlatCap));
        const double anfang = 90 - stellung_ + bogen - double(bogen) * (i + 1) / stuecke;
        maler.drawArc(kreis, static_cast<int>(anfang * 16),
                      static_cast<int>(bogen * 16.0 / stuecke) + 2);
    }
}

} // namespace kalvaro
