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

// So many pixels may be beyond that.
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

// By how much each channel varies between a pixel and its neighbours.
Kanaele kontrastUm(const QImage &bild, int x, int y)
{
    Kanaele kleinste{255, 255, 255};
    Kanaele groesste{0, 0, 0};
    for (int v = std::max(0, y - 1); v <= std::min(bild.height() - 1, y + 1); ++v) {
        for (int u = std::max(0, x - 1); u <= std::min(bild.width() - 1, x + 1); ++u) {
            const Kanaele farbe = kanaele(punkt(bild, u, v));
            for (size_t i = 0; i < farbe.size(); ++i) {
                kleinste[i] = std::min(kleinste[i], farbe[i]);
                groesste[i] = std::max(groesste[i], farbe[i]);
            }
        }
    }
    return {groesste[0] - kleinste[0], groesste[1] - kleinste[1], groesste[2] - kleinste[2]};
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
    const Kanaele kontrast = kontrastUm(erwartet, x, y);
    for (size_t k = 0; k < s.size(); ++k) {
        if (std::abs(s[k] - i[k]) > rundung + kantenanteil * kontrast[k]) {
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
    for (int y = 0; y < gemeinsam.height(); ++y) {
        auto *const zeile = reinterpret_cast<QRgb *>(ergebnis.karte.scanLine(y));
        for (int x = 0; x < gemeinsam.width(); ++x) {
            if (weichtAb(soll, ist, x, y)) {
                ++ergebnis.punkte;
            } else {
                zeile[x] = verblasst(punkt(ist, x, y));
            }
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
