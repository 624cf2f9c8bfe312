#include "ui/karte.h"

#include "ui/erscheinung.h"
#include "ui/stilteile.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPixmapCache>
#include <QVBoxLayout>

#include <array>
#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr double radius = 14;
constexpr double schattendeckung = 0.08;
constexpr double schattenradius = 3;
constexpr double schattenversatz = 1; // downwards
constexpr int schattenweite = static_cast<int>(3 * schattenradius);
constexpr int farbwechsel = 150; // milliseconds

constexpr int schattenrand = schattenweite + 2; // all around, with the offset
constexpr int kleinsteKarte = 2 * static_cast<int>(radius + 2) + 1;

// A Gaussian of the radius around the card's edge, ring by ring; the card itself covers the rest.
void ringeMalen(QPainter &maler, const QRectF &platz)
{
    maler.setBrush(Qt::NoBrush);
    for (int ring = -1; ring < schattenweite; ++ring) {
        const double abstand = ring + 0.5;
        const double alpha =
            schattendeckung * 0.5 * std::erfc(abstand / (schattenradius * std::sqrt(2.0)));
        maler.setPen(QPen(QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)), 1));
        const QRectF umriss =
            platz.translated(0, schattenversatz).adjusted(-abstand, -abstand, abstand, abstand);
        maler.drawRoundedRect(umriss, radius + abstand, radius + abstand);
    }
}

bool istGanz(double laenge)
{
    return laenge == std::round(laenge);
}

// The shadow of the smallest card that has all corners whole, in device pixels.
QPixmap schattenvorlage(int massstab)
{
    const QString name = u"kalvaro-schatten-%1"_s.arg(massstab);
    QPixmap vorlage;
    if (!QPixmapCache::find(name, &vorlage)) {
        constexpr int seite = kleinsteKarte + 2 * schattenrand;
        vorlage = QPixmap(seite * massstab, seite * massstab);
        vorlage.fill(Qt::transparent);
        QPainter maler(&vorlage);
        maler.setRenderHint(QPainter::Antialiasing);
        maler.scale(massstab, massstab);
        ringeMalen(maler, QRectF(schattenrand, schattenrand, kleinsteKarte, kleinsteKarte));
        maler.end();
        QPixmapCache::insert(name, vorlage);
    }
    return vorlage;
}

// Where the shadow of a card at `karte` may draw: around the card and under its round corners.
QRegion schattenort(const QRect &karte)
{
    constexpr int ecke = static_cast<int>(radius) + 2;
    constexpr int rand = 3;
    const QRegion verdeckt = QRegion(karte.adjusted(ecke, rand, -ecke, -rand)) +
                             karte.adjusted(rand, ecke, -rand, -ecke);
    return QRegion(karte.adjusted(-schattenrand, -schattenrand, schattenrand, schattenrand)) -
           verdeckt;
}

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

// Ring by ring a shadow costs as much as all the texts of its card, so where whole device pixels
// allow it, it is put together from the pieces of a small one.
void Karte::schattenMalen(QPainter &maler, const QRectF &platz)
{
    const QTransform aufSchirm = maler.deviceTransform();
    const double massstab = aufSchirm.m11();
    const bool ganze = aufSchirm.type() <= QTransform::TxScale && massstab == aufSchirm.m22() &&
                       massstab >= 1 && istGanz(massstab) && istGanz(platz.left() * massstab) &&
                       istGanz(aufSchirm.dx()) && istGanz(aufSchirm.dy()) && istGanz(platz.top()) &&
                       istGanz(platz.width()) && istGanz(platz.height());
    if (!ganze || platz.width() < kleinsteKarte || platz.height() < kleinsteKarte) {
        ringeMalen(maler, platz);
        return;
    }
    constexpr double ecke = schattenrand + (kleinsteKarte - 1) / 2.0;
    const QPixmap vorlage = schattenvorlage(static_cast<int>(massstab));
    const QRectF ganz = platz.adjusted(-schattenrand, -schattenrand, schattenrand, schattenrand);
    struct Abschnitt
    {
        double nach, lang, von, breit;
    };
    const auto abschnitte = [](double anfang, double laenge) {
        return std::array{Abschnitt{anfang, ecke, 0, ecke},
                          Abschnitt{anfang + ecke, laenge - 2 * ecke, ecke, 1},
                          Abschnitt{anfang + laenge - ecke, ecke, ecke + 1, ecke}};
    };
    const auto spalten = abschnitte(ganz.left(), ganz.width());
    const auto zeilen = abschnitte(ganz.top(), ganz.height());
    for (const Abschnitt &x : spalten) {
        for (const Abschnitt &y : zeilen) {
            if (x.breit > 1 || y.breit > 1) { // the middle lies under the card
                maler.drawPixmap(QRectF(x.nach, y.nach, x.lang, y.lang), vorlage,
                                 QRectF(x.von * massstab, y.von * massstab, x.breit * massstab,
                                        y.breit * massstab));
            }
        }
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
        const QRect ort(karte->mapTo(this, QPoint()), karte->size());
        // What turns or counts inside a card leaves its shadow alone.
        if (karte->isVisibleTo(this) && schattenort(ort).intersects(event->region())) {
            Karte::schattenMalen(maler, ort);
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
