#pragma once

#include <QColor>
#include <QPalette>

namespace kalvaro {

// A colour that follows the appearance: asked anew for each drawing, so a change between light and
// dark needs no rebuilding.
using Farbton = QColor (*)(const QPalette &);

namespace Farbe {

// Dark means: the window is darker than the text on it.
[[nodiscard]] bool istDunkel(const QPalette &palette);

// The one of the two colours that suits the appearance.
[[nodiscard]] QColor dynamisch(const QPalette &palette, const QColor &hell, const QColor &dunkel);

// Colours of the system.
[[nodiscard]] QColor systemGruen(const QPalette &palette);
[[nodiscard]] QColor systemOrange(const QPalette &palette);
[[nodiscard]] QColor systemRot(const QPalette &palette);

// Status colours of texts.
[[nodiscard]] QColor gut(const QPalette &palette);
[[nodiscard]] QColor warn(const QPalette &palette);
[[nodiscard]] QColor krit(const QPalette &palette);

// Soft fills for the same, to be laid over a card: the same in both appearances.
[[nodiscard]] QColor gutWeich(const QPalette &palette);
[[nodiscard]] QColor warnWeich(const QPalette &palette);
[[nodiscard]] QColor kritWeich(const QPalette &palette);

// Surfaces and texts, from the palette.
[[nodiscard]] QColor fenster(const QPalette &palette);
[[nodiscard]] QColor flaeche(const QPalette &palette); // cards and controls
[[nodiscard]] QColor haarlinie(const QPalette &palette);
[[nodiscard]] QColor schrift(const QPalette &palette);
[[nodiscard]] QColor sekundaer(const QPalette &palette);
[[nodiscard]] QColor tertiaer(const QPalette &palette);
[[nodiscard]] QColor gesperrt(const QPalette &palette); // of what cannot be used
[[nodiscard]] QColor akzent(const QPalette &palette);
[[nodiscard]] QColor akzentSchrift(const QPalette &palette);
[[nodiscard]] QColor verweis(const QPalette &palette);
[[nodiscard]] QColor durchsichtig(const QPalette &palette);

// `oben`, with its alpha, laid over the opaque colour `unten`.
[[nodiscard]] QColor ueber(const QColor &oben, const QColor &unten);

// What texts need on their ground, and what outlines, marks and texts of no use now need.
constexpr double lesbarerKontrast = 4.5;
constexpr double erkennbarerKontrast = 3;

// Contrast of two opaque colours from 1 to 21 (WCAG 2.1, "contrast ratio").
[[nodiscard]] double kontrast(const QColor &a, const QColor &b);

// `farbe`, moved towards black or white just as far as `mindestens` on `grund` demands.
[[nodiscard]] QColor lesbar(const QColor &farbe, const QColor &grund, double mindestens);

// `palette` for what stands on `grund`: window, card and field are that colour, and the text is one
// that can be read there.
[[nodiscard]] QPalette aufGrund(const QPalette &palette, const QColor &grund);

// `palette` with the texts that Qt draws by itself readable on what it draws them on. What is
// readable stays as it is.
[[nodiscard]] QPalette lesbarePalette(const QPalette &palette);

// The colour in which a text of the tone `ton` is drawn on the opaque colour `grund`, whatever the
// palette holds: readable, or recognisable where `palette` is that of a control without use. All
// texts of ours come from here. Of schrift, sekundaer and tertiaer none is stronger than the one
// before.
[[nodiscard]] QColor auf(const QColor &grund, Farbton ton, const QPalette &palette);

// The outline of a control that is filled with `innen` and stands on `aussen`, and the ring around
// one that has the keyboard: recognisable on both, or at least from outside.
[[nodiscard]] QColor kontur(const QColor &aussen, const QColor &innen);

// The edge of a card that is filled with `innen` and stands on `aussen`: invalid where the
// palette's cards can be told from that without one.
[[nodiscard]] QColor kartenrand(const QColor &aussen, const QColor &innen, const QPalette &palette);

// haarlinie() so that it can be seen on the opaque colour `grund`.
[[nodiscard]] QColor haarlinieAuf(const QColor &grund, const QPalette &palette);
[[nodiscard]] QColor fokus(const QPalette &palette, const QColor &aussen, const QColor &innen);

} // namespace Farbe

} // namespace kalvaro
