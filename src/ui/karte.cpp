#include "ui/karte.h"

#include "ui/erscheinung.h"
#include "ui/stilteile.h"

#include <QPaintEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace kalvaro {

namespace {

constexpr double radius = 14;
constexpr double schattendeckung = 0.08;
constexpr double schattenradius = 3;
constexpr double schattenversatz = 1; // downwards
constexpr int farbwechsel = 150;      // milliseconds

} // namespace

Karte::Karte(QWidget *parent)
    : QWidget(parent)
{
    wechsel_.setDuration(farbwechsel);
    connect(&wechsel_, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void Karte::setFuellung(Farbton ton)
{
    if (ton == fuellung_) {
        return;
    }
    const bool laufend = wechsel_.state() == QAbstractAnimation::Running;
    const QColor vorher = laufend ? wechsel_.currentValue().value<QColor>() : grundfarbe();
    fuellung_ = ton;
    wechsel_.stop();
    if (isVisible() && !wenigerBewegung()) {
        wechsel_.setStartValue(vorher);
        wechsel_.setEndValue(grundfarbe());
        wechsel_.start();
    }
    update();
}

QColor Karte::grundfarbe() const
{
    return Farbe::ueber(fuellung_(palette()), Farbe::flaeche(palette()));
}

void Karte::einsetzen(QWidget *inhalt, int rand, int oben)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(rand, oben, rand, oben);
    layout->addWidget(inhalt);
}

// A Gaussian of the radius around the card's edge, ring by ring; the card itself covers the rest.
void Karte::schattenMalen(QPainter &maler, const QRectF &platz)
{
    constexpr int weite = static_cast<int>(3 * schattenradius);
    maler.setBrush(Qt::NoBrush);
    for (int ring = -1; ring < weite; ++ring) {
        const double abstand = ring + 0.5;
        const double alpha =
            schattendeckung * 0.5 * std::erfc(abstand / (schattenradius * std::sqrt(2.0)));
        maler.setPen(QPen(QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)), 1));
        const QRectF umriss =
            platz.translated(0, schattenversatz).adjusted(-abstand, -abstand, abstand, abstand);
        maler.drawRoundedRect(umriss, radius + abstand, radius + abstand);
    }
}

void Karte::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        wechsel_.stop(); // towards a colour of the former appearance
        update();
    }
}

void Karte::paintEvent(QPaintEvent *)
{
    const bool laufend = wechsel_.state() == QAbstractAnimation::Running;
    QPainter maler(this);
    const QColor farbe = laufend ? wechsel_.currentValue().value<QColor>() : grundfarbe();
    const QColor rand = Farbe::kartenrand(untergrund(*this), farbe, palette());
    if (!rand.isValid()) {
        rundMalen(maler, rect(), radius, farbe);
        return;
    }
    const QTransform aufSchirm = maler.deviceTransform();
    const QRectF ganz(aufSchirm.mapRect(QRectF(rect())).toRect());
    rundMalen(maler, aufSchirm.inverted().mapRect(ganz), radius, farbe,
              QPen(rand, haarbreite(maler)));
}

Grund::Grund(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void Grund::paintEvent(QPaintEvent *event)
{
    QPainter maler(this);
    maler.fillRect(event->rect(), Farbe::fenster(palette()));
    maler.setRenderHint(QPainter::Antialiasing);
    const auto karten = findChildren<Karte *>();
    for (const Karte *karte : karten) {
        if (karte->isVisibleTo(this)) {
            Karte::schattenMalen(maler, QRectF(karte->mapTo(this, QPoint()), karte->size()));
        }
    }
}

Haarlinie::Haarlinie(Qt::Orientation richtung, QWidget *parent)
    : QWidget(parent)
    , richtung_(richtung)
{
    if (richtung == Qt::Horizontal) {
        setFixedHeight(1);
    } else {
        setFixedWidth(1);
    }
}

void Haarlinie::paintEvent(QPaintEvent *)
{
    QPainter maler(this);
    const QTransform aufSchirm = maler.deviceTransform();
    const double dicke = haarbreite(maler) * aufSchirm.m11();
    QRectF linie = aufSchirm.mapRect(QRectF(rect()));
    if (richtung_ == Qt::Horizontal) {
        linie.setTop(std::round(linie.top()));
        linie.setHeight(dicke);
    } else {
        linie.setLeft(std::round(linie.left()));
        linie.setWidth(dicke);
    }
    maler.fillRect(aufSchirm.inverted().mapRect(linie),
                   Farbe::haarlinieAuf(untergrund(*this), palette()));
}

} // namespace kalvaro
