#include "bildvergleich.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace kalvaro {

namespace {

// Grey levels by which a pixel may differ anywhere: rounding depends on the processor.
constexpr int rundung = 1;

// The part of the contrast around a pixel by which it may differ as well: how much of a pixel an
// edge covers is reckoned a little differently now and then. What is shifted by a pixel differs by
// the whole contrast.
constexpr double kantenanteil = 0.25;

// The part of a tile's contrast by which its lightest and its darkest may differ.
constexpr double farbanteil = 0.1;
constexpr int kachelseite = 16;

// So many pixels and tiles may be beyond that.
constexpr qsizetype ausreisser = 2;

constexpr QRgb anders = 0xffff0000;
constexpr int blass = 4; // what is alike is shown with this part of its contrast

using Kanaele = std::array<int, 3>;

Kanaele kanaele(QRgb farbe)
{
    return {qRed(farbe), qGreen(farbe), qBlue(farbe)};
}

QRgb punkt(const QImage &bild, int x, int y)
{
    return reinterpret_cast<const QRgb *>(bild.constScanLine(y))[x];
}

// From the least to the most of each channel.
struct Spanne
{
    Kanaele kleinste{255, 255, 255};
    Kanaele groesste{0, 0, 0};

    [[nodiscard]] int weite(size_t kanal) const { return groesste[kanal] - kleinste[kanal]; }
};

Spanne spanne(const QImage &bild, const QRect &wo)
{
    Spanne ergebnis;
    const QRect platz = wo.intersected(bild.rect());
    for (int y = platz.top(); y <= platz.bottom(); ++y) {
        for (int x = platz.left(); x <= platz.right(); ++x) {
            const Kanaele farbe = kanaele(punkt(bild, x, y));
            for (size_t k = 0; k < farbe.size(); ++k) {
                ergebnis.kleinste[k] = std::min(ergebnis.kleinste[k], farbe[k]);
                ergebnis.groesste[k] = std::max(ergebnis.groesste[k], farbe[k]);
            }
        }
    }
    return ergebnis;
}

bool weichtAb(const QImage &erwartet, const QImage &gezeichnet, int x, int y)
{
    const QRgb soll = punkt(erwartet, x, y);
    const QRgb ist = punkt(gezeichnet, x, y);
    if (soll == ist) {
        return false;
    }
    const Kanaele s = kanaele(soll);
    const Kanaele i = kanaele(ist);
    const Spanne umgebung = spanne(erwartet, QRect(x - 1, y - 1, 3, 3));
    for (size_t k = 0; k < s.size(); ++k) {
        if (std::abs(s[k] - i[k]) > rundung + kantenanteil * umgebung.weite(k)) {
            return true;
        }
    }
    return false;
}

// Whether something in the tile is of another colour: a text, all of whose pixels are edges.
bool andersGefaerbt(const QImage &erwartet, const QImage &gezeichnet, const QRect &kachel)
{
    const Spanne s = spanne(erwartet, kachel);
    const Spanne i = spanne(gezeichnet, kachel);
    const Spanne umgebung = spanne(erwartet, kachel.adjusted(-1, -1, 1, 1));
    for (size_t k = 0; k < s.kleinste.size(); ++k) {
        const double erlaubt = rundung + farbanteil * umgebung.weite(k);
        if (std::abs(s.kleinste[k] - i.kleinste[k]) > erlaubt ||
            std::abs(s.groesste[k] - i.groesste[k]) > erlaubt) {
            return true;
        }
    }
    return false;
}

QRgb verblasst(QRgb farbe)
{
    const int grau = 255 - (255 - qGray(farbe)) / blass;
    return qRgb(grau, grau, grau);
}

// How many pixels of the tile differ, or 1 where it is only of another colour. Fades those on the
// map that do not.
qsizetype kachelVergleichen(const QImage &erwartet, const QImage &gezeichnet, const QRect &kachel,
                            QImage &karte)
{
    qsizetype anzahl = 0;
    bool gleich = true;
    for (int y = kachel.top(); y <= kachel.bottom(); ++y) {
        auto *const zeile = reinterpret_cast<QRgb *>(karte.scanLine(y));
        for (int x = kachel.left(); x <= kachel.right(); ++x) {
            gleich = gleich && punkt(erwartet, x, y) == punkt(gezeichnet, x, y);
            if (weichtAb(erwartet, gezeichnet, x, y)) {
                ++anzahl;
            } else {
                zeile[x] = verblasst(punkt(gezeichnet, x, y));
            }
        }
    }
    if (gleich || anzahl > 0 || !andersGefaerbt(erwartet, gezeichnet, kachel)) {
        return anzahl;
    }
    QPainter(&karte).fillRect(kachel, QColor(anders));
    return 1;
}

QImage ohneDeckung(const QImage &bild)
{
    QImage kopie = bild.convertToFormat(QImage::Format_RGB32);
    kopie.setDevicePixelRatio(1);
    return kopie;
}

} // namespace

bool Bildabstand::gleich() const
{
    return punkte <= ausreisser;
}

Bildabstand abstand(const QImage &erwartet, const QImage &gezeichnet)
{
    const QImage soll = ohneDeckung(erwartet);
    const QImage ist = ohneDeckung(gezeichnet);
    const QSize gemeinsam = soll.size().boundedTo(ist.size());
    const QSize ganz = soll.size().expandedTo(ist.size());
    Bildabstand ergebnis{0, QImage(ganz, QImage::Format_RGB32)};
    ergebnis.karte.fill(anders);
    for (int y = 0; y < gemeinsam.height(); y += kachelseite) {
        for (int x = 0; x < gemeinsam.width(); x += kachelseite) {
            const QRect kachel =
                QRect(x, y, kachelseite, kachelseite).intersected(QRect(QPoint(), gemeinsam));
            ergebnis.punkte += kachelVergleichen(soll, ist, kachel, ergebnis.karte);
        }
    }
    // Another size is never the same picture.
    ergebnis.punkte +=
        qsizetype{ganz.width()} * ganz.height() - qsizetype{gemeinsam.width()} * gemeinsam.height();
    if (soll.size() != ist.size()) {
        ergebnis.punkte += ausreisser + 1;
    }
    return ergebnis;
}

QImage gegenueberstellung(const QImage &erwartet, const QImage &gezeichnet,
                          const Bildabstand &abstand)
{
    constexpr int luecke = 12;
    const int breite = abstand.karte.width();
    QImage tafel(3 * breite + 2 * luecke, abstand.karte.height(), QImage::Format_RGB32);
    tafel.fill(Qt::darkGray);
    QPainter maler(&tafel);
    maler.drawImage(0, 0, ohneDeckung(erwartet));
    maler.drawImage(breite + luecke, 0, ohneDeckung(gezeichnet));
    maler.drawImage(2 * (breite + luecke), 0, abstand.karte);
    return tafel;
}

} // namespace kalvaro
