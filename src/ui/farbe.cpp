#include "ui/farbe.h"

#include <algorithm>
#include <cmath>

namespace kalvaro::Farbe {

namespace {

QColor mitAlpha(QColor farbe, float alpha)
{
    farbe.setAlphaF(alpha);
    return farbe;
}

QColor mischen(const QColor &a, const QColor &b, double anteilB)
{
    return ueber(mitAlpha(b, static_cast<float>(anteilB)), a);
}

// Relative luminance of an sRGB colour (WCAG 2.1).
double leuchtdichte(const QColor &farbe)
{
    const auto linear = [](double kanal) {
        return kanal <= 0.04045 ? kanal / 12.92 : std::pow((kanal + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(farbe.redF()) + 0.7152 * linear(farbe.greenF()) +
           0.0722 * linear(farbe.blueF());
}

} // namespace

bool istDunkel(const QPalette &palette)
{
    return leuchtdichte(palette.color(QPalette::Window)) <
           leuchtdichte(palette.color(QPalette::WindowText));
}

QColor dynamisch(const QPalette &palette, const QColor &hell, const QColor &dunkel)
{
    return istDunkel(palette) ? dunkel : hell;
}

QColor systemGruen(const QPalette &palette)
{
    return dynamisch(palette, QColor(52, 199, 89), QColor(48, 209, 88));
}

QColor systemOrange(const QPalette &palette)
{
    return dynamisch(palette, QColor(255, 149, 0), QColor(255, 159, 10));
}

QColor systemRot(const QPalette &palette)
{
    return dynamisch(palette, QColor(255, 59, 48), QColor(255, 69, 58));
}

QColor gut(const QPalette &palette)
{
    return dynamisch(palette, QColor(36, 138, 61), systemGruen(palette));
}

QColor warn(const QPalette &palette)
{
    return dynamisch(palette, QColor(178, 80, 0), systemOrange(palette));
}

QColor krit(const QPalette &palette)
{
    return dynamisch(palette, QColor(215, 0, 21), systemRot(palette));
}

QColor gutWeich(const QPalette &)
{
    return mitAlpha(QColor(52, 199, 89), 0.14F);
}

QColor warnWeich(const QPalette &)
{
    return mitAlpha(QColor(255, 149, 0), 0.15F);
}

QColor kritWeich(const QPalette &)
{
    return mitAlpha(QColor(255, 59, 48), 0.13F);
}

QColor fenster(const QPalette &palette)
{
    return palette.color(QPalette::Window);
}

QColor flaeche(const QPalette &palette)
{
    return palette.color(QPalette::Base);
}

// Many desktops have a Midlight that cannot be told from the card.
QColor haarlinie(const QPalette &palette)
{
    constexpr double sichtbar = 1.15;
    constexpr double anteil = 0.11;
    const QColor linie = palette.color(QPalette::Midlight);
    return kontrast(linie, flaeche(palette)) >= sichtbar
               ? linie
               : mischen(flaeche(palette), schrift(palette), anteil);
}

QColor schrift(const QPalette &palette)
{
    return palette.color(QPalette::WindowText);
}

QColor sekundaer(const QPalette &palette)
{
    // Opaque: most desktops have a translucent one, which cannot be measured against a ground.
    return ueber(palette.color(QPalette::PlaceholderText), flaeche(palette));
}

QColor tertiaer(const QPalette &palette)
{
    return mischen(sekundaer(palette), fenster(palette), 0.2);
}

QColor akzent(const QPalette &palette)
{
    return palette.color(QPalette::Highlight);
}

QColor akzentSchrift(const QPalette &palette)
{
    return palette.color(QPalette::HighlightedText);
}

QColor verweis(const QPalette &palette)
{
    // A dark desktop may well have kept the dark blue of a light one.
    return lesbar(palette.color(QPalette::Link), fenster(palette), lesbarerKontrast);
}

QColor durchsichtig(const QPalette &)
{
    return QColor(0, 0, 0, 0);
}

QColor ueber(const QColor &oben, const QColor &unten)
{
    const float a = oben.alphaF();
    const auto kanal = [a](float o, float u) { return o * a + u * (1 - a); };
    return QColor::fromRgbF(kanal(oben.redF(), unten.redF()), kanal(oben.greenF(), unten.greenF()),
                            kanal(oben.blueF(), unten.blueF()));
}

double kontrast(const QColor &a, const QColor &b)
{
    const double x = leuchtdichte(a);
    const double y = leuchtdichte(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

QColor lesbar(const QColor &farbe, const QColor &grund, double mindestens)
{
    const QColor ziel =
        kontrast(Qt::black, grund) > kontrast(Qt::white, grund) ? Qt::black : Qt::white;
    constexpr int stufen = 20;
    for (int stufe = 0; stufe < stufen; ++stufe) {
        const QColor versuch = mischen(farbe, ziel, double(stufe) / stufen);
        if (kontrast(versuch, grund) >= mindestens) {
            return versuch;
        }
    }
    return ziel;
}

} // namespace kalvaro::Farbe
