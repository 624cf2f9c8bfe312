#include "platform/linux/traysymbol.h"

#include "foundation/konstanten.h"
#include "ui/symbole.h"

#include <QFileInfo>
#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// A neighbour of a pixel, and how much of it the pixel's line covers with its rim.
struct Nachbar
{
    QPoint weg;
    double anteil;
};

std::vector<Nachbar> nachbarn(double weite)
{
    const int schritte = static_cast<int>(std::ceil(weite));
    std::vector<Nachbar> alle;
    for (int y = -schritte; y <= schritte; ++y) {
        for (int x = -schritte; x <= schritte; ++x) {
            const double anteil = std::min(weite + 1 - std::hypot(x, y), 1.0);
            if (anteil > 0) {
                alle.push_back({{x, y}, anteil});
            }
        }
    }
    return alle;
}

QImage umrandet(const QImage &bild, const QColor &rand)
{
    constexpr double anteil = 1.0 / 22; // one pixel where panels are as large as they usually are
    const int breite = bild.width();
    const std::vector<Nachbar> umkreis = nachbarn(std::max(1.0, breite * anteil));
    std::vector<double> deckung(size_t(breite) * size_t(bild.height()));
    for (int y = 0; y < bild.height(); ++y) {
        for (int x = 0; x < breite; ++x) {
            const int strich = qAlpha(bild.pixel(x, y));
            if (strich == 0) {
                continue;
            }
            for (const Nachbar &nachbar : umkreis) {
                const QPoint wo = QPoint(x, y) + nachbar.weg;
                if (bild.rect().contains(wo)) {
                    double &dort = deckung[size_t(wo.y()) * size_t(breite) + size_t(wo.x())];
                    dort = std::max(dort, nachbar.anteil * strich);
                }
            }
        }
    }
    QImage ganz(bild.size(), QImage::Format_ARGB32);
    for (int y = 0; y < bild.height(); ++y) {
        for (int x = 0; x < breite; ++x) {
            const int dicht = qRound(deckung[size_t(y) * size_t(breite) + size_t(x)]);
            ganz.setPixel(x, y, qRgba(rand.red(), rand.green(), rand.blue(), dicht));
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

// Reading a theme's lists takes longer than building a window, so its folders for drawings of a
// state are looked into first.
QString symbolImThema(const QString &name)
{
    QString gesucht = KENNUNG + u'-' + name + u"-symbolic"_s;
    for (const auto orte = QIcon::themeSearchPaths(); const QString &ort : orte) {
        for (const QString &thema : {QIcon::themeName(), u"hicolor"_s}) {
            for (const QString &art : {u"scalable"_s, u"symbolic"_s}) {
                const QStringList weg{ort, thema, art, u"status"_s, gesucht + u".svg"_s};
                if (QFileInfo::exists(weg.join(u'/')) && QIcon::hasThemeIcon(gesucht)) {
                    return gesucht;
                }
            }
        }
    }
    return {};
}

} // namespace kalvaro
