#include "ui/farbe.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kalvaro::Farbe {

namespace {

constexpr double deutlicherKontrast = 7;

QColor mitAlpha(QColor farbe, float alpha)
{
    farbe.setAlphaF(alpha);
    return farbe;
}

QColor mischen(const QColor &a, const QColor &b, double anteilB)
{
    return ueber(mitAlpha(b, static_cast<float>(anteilB)), a);
}

// What is shown: eight bits for each channel, opaque.
QColor gerundet(const QColor &farbe)
{
    return QColor(farbe.rgb());
}

const QColor &schwarzOderWeiss(const QColor &grund)
{
    static const QColor schwarz(Qt::black);
    static const QColor weiss(Qt::white);
    return kontrast(schwarz, grund) > kontrast(weiss, grund) ? schwarz : weiss;
}

// What a text needs: what cannot be used may be weaker, but must be recognised.
double textkontrast(const QPalette &palette)
{
    return palette.currentColorGroup() == QPalette::Disabled ? erkennbarerKontrast
                                                             : lesbarerKontrast;
}

// `farbe`, moved towards `ziel` just as far as `mindestens` on each of `gruende` demands; `ziel`
// where that is not enough.
QColor annaehern(const QColor &farbe, const QColor &ziel, std::initializer_list<QColor> gruende,
                 double mindestens)
{
    constexpr int stufen = 100;
    for (int stufe = 0; stufe < stufen; ++stufe) {
        const QColor versuch = gerundet(mischen(farbe, ziel, double(stufe) / stufen));
        if (std::all_of(gruende.begin(), gruende.end(), [&](const QColor &grund) {
                return kontrast(versuch, grund) >= mindestens;
            })) {
            // Rounding must not make a weaker text the stronger one.
            const QColor &grund = *gruende.begin();
            return kontrast(versuch, grund) > kontrast(ziel, grund) ? ziel : versuch;
        }
    }
    return ziel;
}

// The text colour that the palette has for such a ground, or one that can be read on it.
QColor schriftAuf(const QPalette &palette, const QColor &grund)
{
    const QColor amFenster = palette.color(QPalette::WindowText);
    const QColor imFeld = palette.color(QPalette::Text);
    for (const QColor &farbe : {amFenster, imFeld}) {
        if (kontrast(ueber(farbe, grund), grund) >= textkontrast(palette)) {
            return ueber(farbe, grund);
        }
    }
    return lesbar(ueber(amFenster, grund), grund, deutlicherKontrast); // room for weaker texts
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

// What palettes offer is trusted only where it is a weaker text on this ground: some desktops leave
// it black in the dark, others have it as strong as the text itself.
QColor sekundaer(const QPalette &palette)
{
    constexpr double zuSchwach = 2.5;
    constexpr double zuStark = 0.75; // of the text's contrast
    constexpr double anteil = 0.38;  // of the ground, where it is ours
    const QColor grund = flaeche(palette);
    const QColor stark = schrift(palette);
    // Opaque: most desktops have a translucent one, which cannot be measured against a ground.
    QColor farbe = ueber(palette.color(QPalette::PlaceholderText), grund);
    const double erreicht = kontrast(farbe, grund);
    if (erreicht < zuSchwach || erreicht > zuStark * kontrast(stark, grund)) {
        farbe = mischen(stark, grund, anteil);
    }
    return annaehern(farbe, stark, {grund}, textkontrast(palette));
}

QColor tertiaer(const QPalette &palette)
{
    const QColor staerker = sekundaer(palette);
    const QColor grund = fenster(palette);
    return annaehern(mischen(staerker, grund, 0.2), staerker, {grund}, textkontrast(palette));
}

// Palettes rich in contrast have one that is meant to be read (7 : 1), and told from what can be
// used by its hue: it is not made any weaker.
QColor gesperrt(const QPalette &palette)
{
    const QColor eigene = schrift(palette);
    if (palette.currentColorGroup() == QPalette::Disabled &&
        eigene != palette.color(QPalette::Active, QPalette::WindowText) &&
        kontrast(eigene, fenster(palette)) >= deutlicherKontrast) {
        return eigene;
    }
    const QColor staerker = sekundaer(palette);
    const QColor grund = fenster(palette);
    return annaehern(mischen(staerker, grund, 0.35), staerker, {grund}, erkennbarerKontrast);
}

QColor akzent(const QPalette &palette)
{
    return palette.color(QPalette::Highlight);
}

QColor akzentSchrift(const QPalette &palette)
{
    const QColor grund = akzent(palette);
    const QColor farbe = palette.color(QPalette::HighlightedText);
    return kontrast(farbe, grund) >= lesbarerKontrast ? farbe : schwarzOderWeiss(grund);
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
    return annaehern(farbe, schwarzOderWeiss(grund), {grund}, mindestens);
}

QPalette aufGrund(const QPalette &palette, const QColor &grund)
{
    QPalette neu(palette);
    const QColor schrift = schriftAuf(palette, grund);
    for (const auto rolle : {QPalette::Window, QPalette::Base, QPalette::Button}) {
        neu.setColor(rolle, grund);
    }
    // Beside the text of what cannot be used stays the other one, to tell whether it is weaker.
    const bool gesperrt = palette.currentColorGroup() == QPalette::Disabled;
    const auto gruppe = gesperrt ? QPalette::Disabled : QPalette::All;
    for (const auto rolle : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        neu.setColor(gruppe, rolle, schrift);
    }
    return neu;
}

QPalette lesbarePalette(const QPalette &palette)
{
    struct Paar
    {
        QPalette::ColorRole schrift;
        QPalette::ColorRole grund;
    };
    constexpr std::array paare{
        Paar{QPalette::WindowText, QPalette::Window},
        Paar{QPalette::Text, QPalette::Base},
        Paar{QPalette::ButtonText, QPalette::Button},
        Paar{QPalette::ToolTipText, QPalette::ToolTipBase},
        Paar{QPalette::Link, QPalette::Window},
        Paar{QPalette::LinkVisited, QPalette::Window},
    };
    QPalette neu(palette);
    for (const auto gruppe : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        neu.setCurrentColorGroup(gruppe);
        for (const Paar &paar : paare) {
            const QColor grund = neu.color(paar.grund);
            const QColor vorher = ueber(neu.color(paar.schrift), grund);
            if (kontrast(vorher, grund) < textkontrast(neu)) {
                neu.setColor(gruppe, paar.schrift, lesbar(vorher, grund, textkontrast(neu)));
            }
        }
        neu.setColor(gruppe, QPalette::HighlightedText, akzentSchrift(neu));
        const QColor feld = flaeche(neu);
        const double erreicht = kontrast(ueber(neu.color(QPalette::PlaceholderText), feld), feld);
        if (erreicht < textkontrast(neu) || erreicht > kontrast(auf(feld, schrift, neu), feld)) {
            neu.setColor(gruppe, QPalette::PlaceholderText, auf(feld, sekundaer, neu));
        }
    }
    neu.setCurrentColorGroup(palette.currentColorGroup());
    return neu;
}

QColor auf(const QColor &grund, Farbton ton, const QPalette &palette)
{
    return lesbar(ueber(ton(aufGrund(palette, grund)), grund), grund, textkontrast(palette));
}

QColor umriss(const QColor &farbe, const QColor &aussen, const QColor &innen)
{
    for (const QColor &ziel : {schwarzOderWeiss(aussen), schwarzOderWeiss(innen)}) {
        const QColor versuch = annaehern(farbe, ziel, {aussen, innen}, erkennbarerKontrast);
        if (std::min(kontrast(versuch, aussen), kontrast(versuch, innen)) >= erkennbarerKontrast) {
            return versuch;
        }
    }
    return lesbar(farbe, aussen, erkennbarerKontrast);
}

QColor kontur(const QColor &aussen, const QColor &innen)
{
    return umriss(ueber(QColor(128, 128, 128, 110), innen), aussen, innen);
}

// All cards alike, so their own colour decides and not what is laid over it.
QColor kartenrand(const QColor &aussen, const QColor &innen, const QPalette &palette)
{
    constexpr double unterscheidbar = 1.05;
    return kontrast(flaeche(palette), aussen) < unterscheidbar ? kontur(aussen, innen) : QColor();
}

QColor haarlinieAuf(const QColor &grund, const QPalette &palette)
{
    constexpr double kaumSichtbar = 1.1;
    constexpr double deutlich = 1.25; // as ours on a card
    const QColor linie = haarlinie(palette);
    return kontrast(linie, grund) < kaumSichtbar ? lesbar(linie, grund, deutlich) : linie;
}

QColor fokus(const QPalette &palette, const QColor &aussen, const QColor &innen)
{
    const QColor farbe = akzent(palette);
    return umriss(annaehern(ueber(mitAlpha(farbe, 0.6F), aussen), farbe, {aussen, innen},
                            erkennbarerKontrast),
                  aussen, innen);
}

} // namespace kalvaro::Farbe
