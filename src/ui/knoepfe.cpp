#include "ui/knoepfe.h"

#include "ui/farbe.h"
#include "ui/knopfzugang.h"
#include "ui/schrift.h"
#include "ui/stilteile.h"
#include "ui/unterlage.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

constexpr int textschalter = Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine;
constexpr int kaestchenAbstand = 8;

QSize textgroesse(const QWidget &widget, const QString &inhalt)
{
    return widget.fontMetrics().size(Qt::TextShowMnemonic | Qt::TextSingleLine, inhalt);
}

// The colours of `knopf`; those of a disabled one also where it only does nothing for now.
QPalette farben(const QWidget &knopf, bool wirkt)
{
    QPalette palette = knopf.palette();
    if (!wirkt) {
        palette.setCurrentColorGroup(QPalette::Disabled);
    }
    return palette;
}

QFont zweiteSchrift()
{
    return systemschrift(12);
}

} // namespace

QString knopftext(const QString &titel)
{
    return QString(titel).replace(u'&', u"&&"_s);
}

void titelSetzen(QAbstractButton &knopf, const QString &titel)
{
    knopf.setText(knopftext(titel));
    knopf.setAccessibleName(titel);
}

Verweis::Verweis(const QString &titel, QWidget *parent)
    : Tastaturknopf(parent)
{
    knopfzugangAnmelden();
    titelSetzen(*this, titel);
    setFlat(true);
    setAutoDefault(false);
    setFont(systemschrift(12.5));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Verweis::setBeschaeftigt(const QString &warum)
{
    hinweisSetzen(warum);
    if (beschaeftigt_ == !warum.isEmpty()) {
        return;
    }
    beschaeftigt_ = !beschaeftigt_;
    setCursor(beschaeftigt_ ? Qt::ArrowCursor : Qt::PointingHandCursor);
    update();
    beschaeftigtMelden(*this);
}

QSize Verweis::sizeHint() const
{
    return textgroesse(*this, text()) + QSize(2 * ringplatz, 4);
}

void Verweis::paintEvent(QPaintEvent *)
{
    QPainter maler(this);
    const QColor grund = untergrund(*this);
    const Farbton ton = !wirkt() ? Farbe::gesperrt : isDown() ? Farbe::schrift : Farbe::verweis;
    QFont schrift = font();
    schrift.setUnderline(wirkt() && (underMouse() || fokusSichtbar()));
    maler.setFont(schrift);
    maler.setPen(Farbe::auf(grund, ton, farben(*this, wirkt())));
    maler.setLayoutDirection(leserichtung(text()));
    maler.drawText(rect(), textschalter, text());
    if (fokusSichtbar()) {
        fokusMalen(maler, rect(), 4, Farbe::fokus(palette(), grund, grund));
    }
}

void Verweis::keyPressEvent(QKeyEvent *event)
{
    if (beschaeftigt_ && event->key() == Qt::Key_Space) {
        return;
    }
    QPushButton::keyPressEvent(event);
}

bool Verweis::hitButton(const QPoint &ort) const
{
    return !beschaeftigt_ && QPushButton::hitButton(ort);
}

Startknopf::Startknopf(const QString &titel, QWidget *parent)
    : Tastaturknopf(parent)
{
    titelSetzen(*this, titel);
    setFont(systemschrift(13.5, QFont::DemiBold));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

void Startknopf::setWirkungslos(const QString &warum)
{
    wirkungslos_ = !warum.isEmpty();
    hinweisSetzen(warum);
    setCursor(wirkungslos_ ? Qt::ArrowCursor : Qt::PointingHandCursor);
    update();
}

QSize Startknopf::sizeHint() const
{
    constexpr int hoehe = 38;
    return {textgroesse(*this, text()).width() + 2 * 16,
            std::max(hoehe, fontMetrics().height() + 16)};
}

QSize Startknopf::minimumSizeHint() const
{
    return {80, sizeHint().height()};
}

void Startknopf::paintEvent(QPaintEvent *)
{
    constexpr double radius = 9;
    const bool aktiv = isEnabled() && !wirkungslos_;
    const QColor grund = untergrund(*this);
    QColor flaeche =
        aktiv ? Farbe::akzent(palette()) : Farbe::ueber(QColor(128, 128, 128, 40), grund);
    const QColor schrift = aktiv ? Farbe::akzentSchrift(palette())
                                 : Farbe::auf(flaeche, Farbe::gesperrt, farben(*this, false));
    if (aktiv && (isDown() || underMouse())) {
        flaeche = unterZeiger(flaeche, schrift, isDown());
    }
    QPainter maler(this);
    rundMalen(maler, rect(), radius, flaeche,
              aktiv ? akzentrand(palette(), grund) : QPen(Qt::NoPen));
    maler.setPen(schrift);
    maler.setLayoutDirection(leserichtung(text()));
    const int breite = width() - 2 * 16;
    maler.drawText(rect(), textschalter,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, breite, Qt::TextShowMnemonic));
    if (fokusSichtbar()) {
        innenringMalen(maler, rect(), radius, schrift);
    }
}

Haken::Haken(const QString &titel, QWidget *parent)
    : Tastaturknopf(parent)
{
    setText(knopftext(titel));
    setAccessibleName(QString(titel).replace(u'\n', u' '));
    setFont(systemschrift(13));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize Haken::sizeHint() const
{
    const QStringList zeilen = text().split(u'\n');
    double breite = 0;
    double hoehe = 0;
    for (qsizetype i = 0; i < zeilen.size(); ++i) {
        const QFontMetricsF mass(i == 0 ? font() : zweiteSchrift());
        breite = std::max(breite, mass.size(Qt::TextShowMnemonic, zeilen[i]).width());
        hoehe += mass.height() + (i == 0 ? 0 : 1);
    }
    // Two pixels all around for the focus ring.
    return {static_cast<int>(std::ceil(breite)) + kaestchen() + kaestchenAbstand + 4,
            std::max(static_cast<int>(std::ceil(hoehe)), kaestchen()) + 4};
}

QSize Haken::minimumSizeHint() const
{
    return {kaestchen() + kaestchenAbstand + 40, sizeHint().height()};
}

void Haken::paintEvent(QPaintEvent *)
{
    QPainter maler(this);
    const QFontMetricsF erste(font());
    const double oben = 2 + std::max(0.0, (erste.height() - kaestchen()) / 2);
    const QColor grund = untergrund(*this);
    maler.save();
    const auto ort = [this](const QRectF &stueck) {
        return gespiegelt(stueck, rect(), layoutDirection());
    };
    kaestchenMalen(maler, ort(QRectF(0, std::round(oben), kaestchen(), kaestchen())), palette(),
                   grund, isChecked(), !isEnabled());
    maler.restore();

    const QStringList zeilen = text().split(u'\n');
    const double links = kaestchen() + kaestchenAbstand;
    double y = 2;
    for (qsizetype i = 0; i < zeilen.size(); ++i) {
        const QFont schrift = i == 0 ? font() : zweiteSchrift();
        const QFontMetricsF mass(schrift);
        maler.setFont(schrift);
        const Farbton ton = !isEnabled() ? Farbe::gesperrt
                            : i == 0     ? Farbe::schrift
                                         : Farbe::sekundaer;
        maler.setPen(Farbe::auf(grund, ton, palette()));
        maler.setLayoutDirection(leserichtung(zeilen[i]));
        maler.drawText(
            ort(QRectF(links, y, width() - links, mass.height())),
            static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)) |
                Qt::AlignVCenter | Qt::TextShowMnemonic,
            mass.elidedText(zeilen[i], Qt::ElideRight, width() - links, Qt::TextShowMnemonic));
        y += mass.height() + 1;
    }
    if (fokusSichtbar()) {
        // Around the title: the box stands at the edge, which would cut it off.
        constexpr double abstand = kaestchenAbstand / 2.0;
        const QSize ganz = sizeHint().boundedTo(size());
        fokusMalen(
            maler,
            ort(QRectF(links - abstand, 0, ganz.width() - links + abstand, sizeHint().height())), 5,
            Farbe::fokus(palette(), grund, grund));
    }
}

bool Haken::hitButton(const QPoint &ort) const
{
    return QStyle::visualRect(layoutDirection(), rect(), QRect(QPoint(), sizeHint()))
        .intersects(QRect(ort, QSize(1, 1)));
}

Verweis *verweis(const QString &titel, QObject *ziel, std::function<void()> aktion)
{
    auto *const knopf = new Verweis(titel);
    if (ziel != nullptr && aktion) {
        QObject::connect(knopf, &QPushButton::clicked, ziel, [knopf, tun = std::move(aktion)] {
            if (!knopf->beschaeftigt()) {
                tun();
            }
        });
    }
    return knopf;
}

} // namespace kalvaro
