#include "ui/stilteile.h"

#include "ui/farbe.h"
#include "ui/schrift.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionComboBox>

#include <algorithm>
#include <cmath>

namespace kalvaro {

namespace {

constexpr double feldradius = 7;
constexpr double listenradius = 10;
constexpr int kuerzesterDaumen = 28;
constexpr int textrand = 10;

// For the angle at the end of a pop-up button.
int winkelplatz()
{
    return mass(28);
}

} // namespace

void rundMalen(QPainter &maler, const QRectF &platz, double radius, const QBrush &flaeche,
               const QPen &rand)
{
    maler.setRenderHint(QPainter::Antialiasing);
    maler.setPen(rand);
    maler.setBrush(flaeche);
    const double halb = rand.widthF() / 2;
    maler.drawRoundedRect(platz.adjusted(halb, halb, -halb, -halb), radius, radius);
}

QRectF gespiegelt(const QRectF &stueck, const QRectF &ganz, Qt::LayoutDirection anordnung)
{
    return anordnung == Qt::RightToLeft
               ? stueck.translated(ganz.left() + ganz.right() - stueck.left() - stueck.right(), 0)
               : stueck;
}

double haarbreite(const QPainter &maler)
{
    const double massstab = maler.deviceTransform().m11();
    return std::max(1.0, std::floor(massstab)) / massstab;
}

QPen akzentrand(const QPalette &palette, const QColor &grund)
{
    const QColor flaeche = Farbe::akzent(palette);
    const bool noetig = Farbe::kontrast(flaeche, grund) < Farbe::erkennbarerKontrast;
    return noetig ? QPen(Farbe::kontur(grund, flaeche), 1) : QPen(Qt::NoPen);
}

QColor unterZeiger(const QColor &flaeche, const QColor &schrift, bool gedrueckt)
{
    const int deckung = gedrueckt ? 45 : 22;
    const bool heller = Farbe::kontrast(schrift, Qt::black) < Farbe::kontrast(flaeche, Qt::black);
    return Farbe::ueber(heller ? QColor(255, 255, 255, deckung) : QColor(0, 0, 0, deckung),
                        flaeche);
}

int kaestchen()
{
    return mass(16);
}

void kaestchenMalen(QPainter &maler, const QRectF &platz, const QPalette &palette,
                    const QColor &grund, bool an, bool gesperrt)
{
    const double seite = platz.width();
    const bool voll = an && !gesperrt;
    const QColor flaeche = voll       ? Farbe::akzent(palette)
                           : gesperrt ? Farbe::ueber(QColor(128, 128, 128, 40), grund)
                                      : Farbe::flaeche(palette);
    rundMalen(maler, platz, seite * 0.27, flaeche,
              voll ? akzentrand(palette, grund) : QPen(Farbe::kontur(grund, flaeche), 1));
    if (an) {
        QPainterPath haken;
        haken.moveTo(platz.left() + seite * 0.28, platz.top() + seite * 0.52);
        haken.lineTo(platz.left() + seite * 0.44, platz.top() + seite * 0.68);
        haken.lineTo(platz.left() + seite * 0.73, platz.top() + seite * 0.34);
        maler.setBrush(Qt::NoBrush);
        const QColor farbe =
            voll ? Farbe::akzentSchrift(palette) : Farbe::auf(flaeche, Farbe::gesperrt, palette);
        maler.setPen(QPen(farbe, seite * 0.1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        maler.drawPath(haken);
    }
}

void fokusMalen(QPainter &maler, const QRectF &platz, double radius, const QColor &farbe)
{
    rundMalen(maler, platz, radius, Qt::NoBrush, QPen(farbe, 2));
}

void innenringMalen(QPainter &maler, const QRectF &platz, double radius, const QColor &farbe)
{
    constexpr double abstand = 3;
    maler.setPen(QPen(farbe, 1.5));
    maler.setBrush(Qt::NoBrush);
    maler.drawRoundedRect(platz.adjusted(abstand, abstand, -abstand, -abstand), radius - abstand,
                          radius - abstand);
}

QColor feldflaeche(const QStyleOption &option, const QColor &grund)
{
    const bool an = option.state.testFlag(QStyle::State_Enabled);
    return an ? Farbe::flaeche(option.palette) : Farbe::ueber(QColor(128, 128, 128, 18), grund);
}

void feldMalen(QPainter &maler, const QStyleOption &option, const QColor &grund)
{
    const QColor flaeche = feldflaeche(option, grund);
    rundMalen(maler, option.rect, feldradius, flaeche, Farbe::kontur(grund, flaeche));
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        fokusMalen(maler, option.rect, feldradius, Farbe::fokus(option.palette, grund, flaeche));
    }
}

void auswahlMalen(QPainter &maler, const QStyleOptionComboBox &option, const QColor &grund)
{
    QColor flaeche = feldflaeche(option, grund);
    if (option.state.testFlag(QStyle::State_MouseOver)) {
        flaeche = Farbe::ueber(QColor(128, 128, 128, 18), flaeche);
    }
    rundMalen(maler, option.rect, feldradius, flaeche, Farbe::kontur(grund, flaeche));

    const bool an = option.state.testFlag(QStyle::State_Enabled);
    const QColor winkel =
        Farbe::auf(flaeche, an ? Farbe::sekundaer : Farbe::gesperrt, option.palette);
    const QRectF ganz(option.rect);
    const QPointF mitte =
        gespiegelt(
            {QPointF(ganz.right() - winkelplatz() / 2.0 - 2, ganz.center().y() + 1), QSizeF(0, 0)},
            ganz, option.direction)
            .topLeft();
    maler.setPen(QPen(winkel, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    maler.setBrush(Qt::NoBrush);
    const double f = schriftfaktor();
    maler.drawPolyline(QPolygonF({mitte + QPointF(-3.5, -2) * f, mitte + QPointF(0, 1.5) * f,
                                  mitte + QPointF(3.5, -2) * f}));

    const bool mitTasten = option.state.testFlag(QStyle::State_KeyboardFocusChange);
    if (option.state.testFlag(QStyle::State_HasFocus) && mitTasten) {
        fokusMalen(maler, option.rect, feldradius, Farbe::fokus(option.palette, grund, flaeche));
    }
}

QRect auswahltext(const QStyleOptionComboBox &option)
{
    return QStyle::visualRect(option.direction, option.rect,
                              option.rect.adjusted(textrand - 1, 1, -winkelplatz(), -1));
}

void listeMalen(QPainter &maler, const QStyleOption &option)
{
    const QColor flaeche = Farbe::flaeche(option.palette);
    rundMalen(maler, option.rect, listenradius, flaeche,
              Farbe::haarlinieAuf(flaeche, option.palette));
}

void klappzeichenMalen(QPainter &maler, const QStyleOption &option)
{
    if (!option.state.testFlag(QStyle::State_Children)) {
        return;
    }
    const double breite = 3.5 * schriftfaktor();
    const double hoehe = 2.75 * schriftfaktor();
    QPainterPath dreieck;
    dreieck.moveTo(-breite, -hoehe);
    dreieck.lineTo(breite, -hoehe);
    dreieck.lineTo(0, hoehe);
    dreieck.closeSubpath();

    maler.setRenderHint(QPainter::Antialiasing);
    maler.translate(QRectF(option.rect).center());
    if (!option.state.testFlag(QStyle::State_Open)) {
        maler.rotate(option.direction == Qt::RightToLeft ? 90 : -90);
    }
    maler.setPen(Qt::NoPen);
    maler.setBrush(Farbe::auf(Farbe::flaeche(option.palette), Farbe::tertiaer, option.palette));
    maler.drawPath(dreieck);
}

void rollbalkenMalen(QPainter &maler, const QStyleOptionSlider &option, const QColor &grund)
{
    maler.fillRect(option.rect, grund);
    if (option.maximum <= option.minimum || !option.state.testFlag(QStyle::State_Enabled)) {
        return;
    }
    const bool gegriffen = (option.state.testFlag(QStyle::State_Sunken) ||
                            option.state.testFlag(QStyle::State_MouseOver)) &&
                           option.activeSubControls == QStyle::SC_ScrollBarSlider;
    const QRectF daumen =
        QRectF(rollbalkenstueck(option, QStyle::SC_ScrollBarSlider)).adjusted(3, 3, -3, -3);
    const double radius = std::min(daumen.width(), daumen.height()) / 2;
    QColor farbe = Farbe::auf(grund, Farbe::schrift, option.palette);
    farbe.setAlphaF(gegriffen ? 0.5F : 0.28F);
    rundMalen(maler, daumen, radius,
              Farbe::lesbar(Farbe::ueber(farbe, grund), grund,
                            gegriffen ? Farbe::lesbarerKontrast : Farbe::erkennbarerKontrast));
}

QRect rollbalkenstueck(const QStyleOptionSlider &option, QStyle::SubControl stueck)
{
    const bool waagrecht = option.orientation == Qt::Horizontal;
    const QRect &ganz = option.rect;
    const int laenge = waagrecht ? ganz.width() : ganz.height();
    const qint64 inhalt = qint64{option.maximum} - option.minimum + option.pageStep;
    const int gemaess =
        inhalt > 0 ? static_cast<int>(qint64{option.pageStep} * laenge / inhalt) : 0;
    const int daumen = std::clamp(gemaess, std::min(kuerzesterDaumen, laenge), laenge);
    const int ab = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, laenge - daumen, option.upsideDown);
    const auto abschnitt = [&](int von, int wieviel) {
        return waagrecht
                   ? QStyle::visualRect(option.direction, ganz,
                                        QRect(ganz.x() + von, ganz.y(), wieviel, ganz.height()))
                   : QRect(ganz.x(), ganz.y() + von, ganz.width(), wieviel);
    };
    switch (stueck) {
    case QStyle::SC_ScrollBarGroove:
        return ganz;
    case QStyle::SC_ScrollBarSlider:
        return abschnitt(ab, daumen);
    case QStyle::SC_ScrollBarSubPage:
        return abschnitt(0, ab);
    case QStyle::SC_ScrollBarAddPage:
        return abschnitt(ab + daumen, laenge - ab - daumen);
    default:
        return {}; // no arrows
    }
}

} // namespace kalvaro
