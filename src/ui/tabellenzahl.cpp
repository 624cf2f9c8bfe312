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

// Sizes come in steps on most screens, so the width is measured again for each.
double Tabellenzahl::passend() const
{
    constexpr double kleinstes = 0.5;
    constexpr double schritt = 0.02;
    const double noetig = gesamtbreite(text(), QFontMetricsF(font()));
    QFont schrift = font();
    double anteil = std::min(1.0, width() / std::max(noetig, 1.0));
    while (anteil > kleinstes) {
        schrift.setPointSizeF(font().pointSizeF() * anteil);
        if (gesamtbreite(text(), QFontMetricsF(schrift)) <= width()) {
            return anteil;
        }
        anteil -= schritt;
    }
    return kleinstes;
}

void Tabellenzahl::paintEvent(QPaintEvent *)
{
    double anteil = passend();
    if (reihe_ != nullptr) {
        for (const Tabellenzahl *nachbar : *reihe_) {
            anteil = std::min(anteil, nachbar->passend());
        }
    }
    QFont schrift = font();
    schrift.setPointSizeF(schrift.pointSizeF() * anteil);
    const QFontMetricsF mass(schrift);
    QPainter maler(this);
    maler.setFont(schrift);
    maler.setPen(stift());
    const double grundlinie = (height() + mass.ascent() - mass.descent()) / 2;
    QString inhalt = text();
    if (gesamtbreite(inhalt, mass) > width()) {
        while (!inhalt.isEmpty() && gesamtbreite(inhalt + u'…', mass) > width()) {
            inhalt.chop(1);
        }
        inhalt += u'…';
    }
    double links = layoutDirection() == Qt::RightToLeft ? width() - gesamtbreite(inhalt, mass) : 0;
    for (const QChar zeichen : std::as_const(inhalt)) {
        const double breite = zellbreite(zeichen, mass);
        const double spiel = breite - mass.horizontalAdvance(zeichen);
        maler.drawText(QPointF(links + spiel / 2, grundlinie), zeichen);
        links += breite;
    }
}

} // namespace kalvaro
