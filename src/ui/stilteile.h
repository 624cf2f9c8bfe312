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

// Draws the box of a check box into `platz`, a square with sides of usually kaestchen(),
// which grow with the system's font.
[[nodiscard]] int kaestchen();
void kaestchenMalen(QPainter &maler, const QRectF &platz, const QPalette &palette, bool an,
                    bool gesperrt);

// Draws the ring that shows the keyboard focus around a shape of the given corner radius.
void fokusMalen(QPainter &maler, const QRectF &platz, double radius, const QPalette &palette);

// The field of a line edit.
void feldMalen(QPainter &maler, const QStyleOption &option);

// A pop-up button without its text.
void auswahlMalen(QPainter &maler, const QStyleOptionComboBox &option);

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
