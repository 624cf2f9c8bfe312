#include "ui/schrift.h"

#include <QApplication>
#include <QFontInfo>
#include <QScreen>

namespace kalvaro {

double schriftfaktor()
{
    const int pixel = QFontInfo(QApplication::font()).pixelSize();
    return pixel <= 15 ? 1.0 : pixel / 13.0;
}

int mass(int punkte)
{
    return qRound(punkte * schriftfaktor());
}

QFont systemschrift(double punkt, QFont::Weight gewicht)
{
    QFont schrift = QApplication::font();
    const QScreen *const schirm = QGuiApplication::primaryScreen();
    const double dpi = schirm != nullptr ? schirm->logicalDotsPerInchY() : 96;
    // Only point sizes take fractions, and a point is 1/72 inch.
    schrift.setPointSizeF(punkt * schriftfaktor() * 72 / dpi);
    schrift.setWeight(gewicht);
    return schrift;
}

} // namespace kalvaro
