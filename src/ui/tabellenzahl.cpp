#include "ui/tabellenzahl.h"

#include <QPainter>

#include <cmath>

namespace kalvaro {

namespace {

double zellbreite(QChar zeichen, const QFontMetricsF &mass)
{
    if (!zeichen.isDigit()) {
        return mass.horizontalAdvance(zeichen);
    }
    double breite = 0;
    for (char16_t ziffer = u'0'; ziffer <= u'9'; ++ziffer) {
        breite = std::max(breite, mass.horizontalAdvance(QChar(ziffer)));
    }
    return breite;
}

double gesamtbreite(const QString &inhalt, const QFontMetricsF &mass)
{
    double breite = 0;
    for (const QChar zeichen : inhalt) {
        breite += zellbreite(zeichen, mass);
    }
    return breite;
}

} // namespace

Tabellenzahl::Tabellenzahl(const QString &inhalt, QWidget *parent)
    : Beschriftung(inhalt, parent)
{
}

QSize Tabellenzahl::sizeHint() const
{
    const QFontMetricsF mass(font());
    return {static_cast<int>(std::ceil(gesamtbreite(text(), mass))),
            static_cast<int>(std::ceil(mass.height()))};
}

void Tabellenzahl::paintEvent(QPaintEvent *)
{
    QFont schrift = font();
    const double noetig = gesamtbreite(text(), QFontMetricsF(schrift));
    if (noetig > width()) {
        schrift.setPointSizeF(schrift.pointSizeF() * std::max(width() / noetig, 0.5));
    }
    const QFontMetricsF mass(schrift);
    QPainter maler(this);
    maler.setFont(schrift);
    maler.setPen(farbe());
    const double grundlinie = (height() + mass.ascent() - mass.descent()) / 2;
    double links = 0;
    const QString inhalt = text();
    for (const QChar zeichen : inhalt) {
        const double breite = zellbreite(zeichen, mass);
        const double spiel = breite - mass.horizontalAdvance(zeichen);
        maler.drawText(QPointF(links + spiel / 2, grundlinie), zeichen);
        links += breite;
    }
}

} // namespace kalvaro
