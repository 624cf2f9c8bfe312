#include "ui/stilteile.h"

#include "ui/farbe.h"
#include "ui/schrift.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionComboBox>

#include <algorithm>

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

QColor kontur(const QPalette &palette)
{
    return Farbe::ueber(QColor(128, 128, 128, 70), Farbe::flaeche(palette));
}

QColor feldflaeche(const QStyleOption &option)
{
    const QPalette &palette = option.palette;
    const bool an = option.state.testFlag(QStyle::State_Enabled);
    return an ? Farbe::flaeche(palette)
              : Farbe::ueber(QColor(128, 128, 128, 18), Farbe::fenster(palette));
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

int kaestchen()
{
    return mass(16);
}

void kaestchenMalen(QPainter &maler, const QRectF &platz, const QPalette &palette, bool an,
                    bool gesperrt)
{
    const double seite = platz.width();
    const QColor kontur = Farbe::ueber(QColor(128, 128, 128, 110), Farbe::flaeche(palette));
    maler.setOpacity(gesperrt ? 0.5 : 1);
    rundMalen(maler, platz, seite * 0.27, an ? Farbe::akzent(palette) : Farbe::flaeche(palette),
              QPen(kontur, 1, an ? Qt::NoPen : Qt::SolidLine));
    if (an) {
        QPainterPath haken;
        haken.moveTo(platz.left() + seite * 0.28, platz.top() + seite * 0.52);
        haken.lineTo(platz.left() + seite * 0.44, platz.top() + seite * 0.68);
        haken.lineTo(platz.left() + seite * 0.73, platz.top() + seite * 0.34);
        maler.setBrush(Qt::NoBrush);
        maler.setPen(QPen(Farbe::akzentSchrift(palette), seite * 0.1, Qt::SolidLine, Qt::RoundCap,
                          Qt::RoundJoin));
        maler.drawPath(haken);
    }
}

void fokusMalen(QPainter &maler, const QRectF &platz, double radius, const QPalette &palette)
{
    QColor ring = Farbe::akzent(palette);
    ring.setAlphaF(0.6F);
    rundMalen(maler, platz, radius, Qt::NoBrush, QPen(ring, 2));
}

void feldMalen(QPainter &maler, const QStyleOption &option)
{
    rundMalen(maler, option.rect, feldradius, feldflaeche(option), kontur(option.palette));
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        fokusMalen(maler, option.rect, feldradius, option.palette);
    }
}

void auswahlMalen(QPainter &maler, const QStyleOptionComboBox &option)
{
    QColor flaeche = feldflaeche(option);
    if (option.state.testFlag(QStyle::State_MouseOver)) {
        flaeche = Farbe::ueber(QColor(128, 128, 128, 18), flaeche);
    }
    rundMalen(maler, option.rect, feldradius, flaeche, kontur(option.palette));

    const bool an = option.state.testFlag(QStyle::State_Enabled);
    const QPointF mitte(option.rect.right() - winkelplatz() / 2.0 - 1,
                        QRectF(option.rect).center().y() + 1);
    maler.setPen(QPen(an ? Farbe::sekundaer(option.palette) : Farbe::tertiaer(option.palette), 1.5,
                      Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    maler.setBrush(Qt::NoBrush);
    const double f = schriftfaktor();
    maler.drawPolyline(QPolygonF({mitte + QPointF(-3.5, -2) * f, mitte + QPointF(0, 1.5) * f,
                                  mitte + QPointF(3.5, -2) * f}));

    const bool mitTasten = option.state.testFlag(QStyle::State_KeyboardFocusChange);
    if (option.state.testFlag(QStyle::State_HasFocus) && mitTasten) {
        fokusMalen(maler, option.rect, feldradius, option.palette);
    }
}

QRect auswahltext(const QStyleOptionComboBox &option)
{
    return option.rect.adjusted(textrand - 1, 1, -winkelplatz(), -1);
}

void listeMalen(QPainter &maler, const QStyleOption &option)
{
    rundMalen(maler, option.rect, listenradius, Farbe::flaeche(option.palette),
              Farbe::haarlinie(option.palette));
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
    maler.setBrush(Farbe::tertiaer(option.palette));
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
    QColor farbe = Farbe::schrift(option.palette);
    farbe.setAlphaF(gegriffen ? 0.5F : 0.28F);
    rundMalen(maler, daumen, radius, farbe);
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
        return waagrecht ? QRect(ganz.x() + von, ganz.y(), wieviel, ganz.height())
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
