#pragma once

#include <QImage>

namespace kalvaro {

// How far a picture is from the one that was expected. Antialiasing may differ a little between
// versions of Qt and FreeType; a shape, a line or a colour that is another one may not, nor may
// anything stand a pixel beside its place.
struct Bildabstand
{
    qsizetype punkte = 0; // pixels that differ, and tiles of another colour
    QImage karte;         // shows them; as large as the larger of the two pictures

    [[nodiscard]] bool gleich() const;
};

[[nodiscard]] Bildabstand abstand(const QImage &erwartet, const QImage &gezeichnet);

// Expected, drawn and the difference, side by side.
[[nodiscard]] QImage gegenueberstellung(const QImage &erwartet, const QImage &gezeichnet,
                                        const Bildabstand &abstand);

} // namespace kalvaro
