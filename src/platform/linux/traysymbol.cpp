#include "platform/linux/traysymbol.h"

#include "foundation/konstanten.h"
#include "ui/symbole.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// How much of the pixel at `wo` a line covers that is `weite` pixels thicker on each side than
// what is drawn in `bild`.
int deckung(const QImage &bild, QPoint wo, double weite)
{
    const int schritte = static_cast<int>(std::ceil(weite));
    const QRect nah = QRect(wo, QSize(1, 1)).adjusted(-schritte, -schritte, schritte, schritte);
    const QRect feld = nah & bild.rect();
    double groesste = 0;
    for (int y = feld.top(); y <= feld.bottom(); ++y) {
        for (int x = feld.left(); x <= feld.right(); ++x) {
            const double abstand = std::hypot(x - wo.x(), y - wo.y());
            const double anteil = std::clamp(weite + 1 - abstand, 0.0, 1.0);
            groesste = std::max(groesste, anteil * qAlpha(bild.pixel(x, y)));
        }
    }
    return qRound(groesste);
}

QImage umrandet(const QImage &bild, const QColor &rand)
{
    constexpr double anteil = 1.0 / 22; // one pixel where panels are as large as they usually are
    const double weite = std::max(1.0, bild.width() * anteil);
    QImage ganz(bild.size(), QImage::Format_ARGB32);
    for (int y = 0; y < bild.height(); ++y) {
        for (int x = 0; x < bild.width(); ++x) {
            ganz.setPixel(
                x, y, qRgba(rand.red(), rand.green(), rand.blue(), deckung(bild, {x, y}, weite)));
        }
    }
    ganz.convertTo(QImage::Format_ARGB32_Premultiplied);
    QPainter(&ganz).drawImage(0, 0, bild);
    return ganz;
}

class Maske final : public QIconEngine
{
public:
    Maske(QString name, const Leistentinte &tinte)
        : name_(std::move(name))
        , tinte_(tinte)
    {
    }

    void paint(QPainter *maler, const QRect &wo, QIcon::Mode /*modus*/,
               QIcon::State /*zustand*/) override
    {
        const int seite = qMin(wo.width(), wo.height());
        const QPoint ecke =
            wo.topLeft() + QPoint((wo.width() - seite) / 2, (wo.height() - seite) / 2);
        const double faktor = maler->device()->devicePixelRatioF();
        QImage bild = traybild(name_, qRound(seite * faktor), tinte_);
        bild.setDevicePixelRatio(faktor);
        maler->drawImage(ecke, bild);
    }

    QPixmap pixmap(const QSize &groesse, QIcon::Mode /*modus*/, QIcon::State /*zustand*/) override
    {
        return QPixmap::fromImage(traybild(name_, qMin(groesse.width(), groesse.height()), tinte_));
    }

    QString key() const override { return u"kalvaro.maske"_s; }
    QIconEngine *clone() const override { return new Maske(name_, tinte_); }

private:
    const QString name_;
    const Leistentinte tinte_;
};

} // namespace

Leistentinte Leistentinte::gesagt(const QColor &strich)
{
    return {strich, {}};
}

Leistentinte Leistentinte::geraten(const QColor &strich)
{
    const double aufWeiss = Farbe::kontrast(strich, Qt::white);
    const double aufSchwarz = Farbe::kontrast(strich, Qt::black);
    return {strich, aufWeiss > aufSchwarz ? Qt::white : Qt::black};
}

QImage traybild(const QString &name, int pixel, const Leistentinte &tinte)
{
    const QImage bild = symbolbild(name, pixel, tinte.strich, 1).toImage();
    return bild.isNull() || !tinte.rand.isValid() ? bild : umrandet(bild, tinte.rand);
}

QIcon traysymbol(const QString &name, const Leistentinte &tinte)
{
    return QIcon(new Maske(name, tinte));
}

QString symbolImThema(const QString &name)
{
    const QString gesucht = KENNUNG + u'-' + name + u"-symbolic"_s;
    return QIcon::hasThemeIcon(gesucht) ? gesucht : QString();
}

} // namespace kalvaro
