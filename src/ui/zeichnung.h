#pragma once

#include <QBrush>
#include <QPainterPath>
#include <QPen>
#include <QRectF>

#include <optional>
#include <vector>

class QPainter;
class QXmlStreamAttributes;

namespace kalvaro {

// A drawing of ours in the few parts of SVG 1.1 that they are written in: paths, circles and
// rectangles with fill and stroke, and one linear gradient. Whatever else a file has is passed
// over. Qt's own reader would bring three libraries into every start.
class Zeichnung
{
public:
    // Nothing to draw where `svg` holds none.
    explicit Zeichnung(const QByteArray &svg);

    [[nodiscard]] bool leer() const { return formen_.empty(); }

    // Draws it as large as `platz`.
    void malen(QPainter &maler, const QRectF &platz) const;

private:
    enum class Art {
        Pfad,
        Kreis,
        Rechteck,
    };

    struct Form
    {
        Art art = Art::Pfad;
        QPainterPath pfad{};
        QRectF rahmen{};  // of circles and rectangles
        double ecken = 0; // their radius
        QBrush flaeche{};
        QPen stift{};

        void malen(QPainter &maler) const;
    };

    [[nodiscard]] static std::optional<Art> formart(QStringView element);
    [[nodiscard]] static Form form(const QXmlStreamAttributes &angaben, Art art);

    QRectF blatt_; // "viewBox"
    std::vector<Form> formen_;
};

} // namespace kalvaro
