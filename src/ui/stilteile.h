#pragma once

#include <QPen>
#include <QStyle>

class QStyleOptionComboBox;
class QStyleOptionSlider;

// The parts of controls that Stil draws, some of which our own controls share.
namespace kalvaro {

// Fills a rounded shape and draws its edge, which lies within `platz`. What `maler` draws from then
// on is smooth as well.
void rundMalen(QPainter &maler, const QRectF &platz, double radius, const QBrush &flaeche,
               const QPen &rand = QPen(Qt::NoBrush, 0, Qt::NoPen));

// Where `stueck`, which belongs there in a layout from left to right, lies in `ganz`.
[[nodiscard]] QRectF gespiegelt(const QRectF &stueck, const QRectF &ganz,
                                Qt::LayoutDirection anordnung);

// The thickness of a hairline in logical pixels: a whole number of the screen's own. At 1.25 and
// 1.5, lines one logical pixel wide come out one wide here and two wide there.
[[nodiscard]] double haarbreite(const QPainter &maler);

// Wherever something is drawn, `grund` is the opaque colour that it stands on.

// The edge of a control that is filled with the accent: none where that stands out from `grund`.
[[nodiscard]] QPen akzentrand(const QPalette &palette, const QColor &grund);

// The fill of a control with a text in `schrift` while the pointer is on it, or presses it: the
// text only gains by it.
[[nodiscard]] QColor unterZeiger(const QColor &flaeche, const QColor &schrift, bool gedrueckt);

// Draws the box of a check box into `platz`, a square with sides of usually kaestchen(),
// which grow with the system's font.
[[nodiscard]] int kaestchen();
void kaestchenMalen(QPainter &maler, const QRectF &platz, const QPalette &palette,
                    const QColor &grund, bool an, bool gesperrt);

// Draws the ring that shows the keyboard focus around a shape of the given corner radius. `farbe`
// comes from Farbe::fokus().
void fokusMalen(QPainter &maler, const QRectF &platz, double radius, const QColor &farbe);

// The ring within a control that is filled with the ring's own colour.
void innenringMalen(QPainter &maler, const QRectF &platz, double radius, const QColor &farbe);

// The fill of a field or a pop-up button.
[[nodiscard]] QColor feldflaeche(const QStyleOption &option, const QColor &grund);

// The field of a line edit.
void feldMalen(QPainter &maler, const QStyleOption &option, const QColor &grund);

// A pop-up button without its text.
void auswahlMalen(QPainter &maler, const QStyleOptionComboBox &option, const QColor &grund);

// Where the text of a pop-up button stands.
[[nodiscard]] QRect auswahltext(const QStyleOptionComboBox &option);

// The rounded ground of a list or tree; its content keeps `listenrand` away from the edge.
inline constexpr int listenrand = 6;
void listeMalen(QPainter &maler, const QStyleOption &option);

// The small triangle before a row that has others below it.
void klappzeichenMalen(QPainter &maler, const QStyleOption &option);

// A scroll bar that is only its thumb, on the ground of what it scrolls.
inline constexpr int rollbreite = 12;
void rollbalkenMalen(QPainter &maler, const QStyleOptionSlider &option, const QColor &grund);
[[nodiscard]] QRect rollbalkenstueck(const QStyleOptionSlider &option, QStyle::SubControl stueck);

} // namespace kalvaro
