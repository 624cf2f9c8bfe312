#include "ui/symbole.h"

#include "ui/unterlage.h"

#include <QIconEngine>
#include <QPainter>
#include <QPicture>
#include <QPixmapCache>

// The resources of a static library must be asked for by name, from outside any namespace.
static void symboleLaden()
{
    Q_INIT_RESOURCE(symbole);
}

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

// A square drawing; null when there is none of that name.
QPicture zeichnung(const QString &name)
{
    symboleLaden();
    QPicture bild;
    bild.load(u":/kalvaro/symbole/%1.zeichnung"_s.arg(name));
    return bild;
}

QImage gezeichnet(QPicture zeichnung, int seite)
{
    QImage bild(seite, seite, QImage::Format_ARGB32_Premultiplied);
    bild.fill(Qt::transparent);
    QPainter maler(&bild);
    const QRect blatt = zeichnung.boundingRect();
    maler.scale(double(seite) / blatt.width(), double(seite) / blatt.height());
    maler.translate(-blatt.topLeft());
    zeichnung.play(&maler);
    return bild;
}

// The picture of that name, drawn by `malen` where it has not been, or not for some time.
template<typename Malen>
QPixmap gemerkt(const QString &name, Malen malen)
{
    QPixmap bild;
    if (!QPixmapCache::find(name, &bild)) {
        bild = QPixmap::fromImage(malen());
        QPixmapCache::insert(name, bild);
    }
    return bild;
}

// Draws the icon in whatever size is asked for.
class Symbolmaler final : public QIconEngine
{
public:
    explicit Symbolmaler(const QPicture &zeichnung)
        : zeichnung_(zeichnung)
    {
    }

    void paint(QPainter *maler, const QRect &platz, QIcon::Mode modus, QIcon::State stand) override
    {
        const double faktor = maler->device()->devicePixelRatioF();
        maler->drawPixmap(platz, pixmap(platz.size() * faktor, modus, stand));
    }

    QPixmap pixmap(const QSize &pixel, QIcon::Mode /*modus*/, QIcon::State /*stand*/) override
    {
        const int seite = std::min(pixel.width(), pixel.height());
        return gemerkt(u"kalvaro-symbol-%1"_s.arg(seite),
                       [&] { return seite > 0 ? gezeichnet(zeichnung_, seite) : QImage(); });
    }

    [[nodiscard]] QIconEngine *clone() const override { return new Symbolmaler(*this); }

private:
    const QPicture zeichnung_;
};

} // namespace

QPixmap symbolbild(const QString &name, int groesse, const QColor &farbe, double faktor)
{
    const int pixel = qRound(groesse * faktor);
    const QString schluessel = u"kalvaro-%1-%2-%3-%4"_s.arg(name).arg(pixel).arg(faktor).arg(
        QString::number(farbe.rgba(), 16));
    return gemerkt(schluessel, [&] {
        const QPicture vorlage = zeichnung(name);
        if (vorlage.isNull() || pixel <= 0) {
            return QImage();
        }
        QImage maske = gezeichnet(vorlage, pixel);
        QPainter maler(&maske);
        maler.setCompositionMode(QPainter::CompositionMode_SourceIn);
        maler.fillRect(maske.rect(), farbe);
        maler.end();
        maske.setDevicePixelRatio(faktor);
        return maske;
    });
}

QIcon programmsymbol()
{
    static const QPicture vorlage = zeichnung(u"de.kalvaro.kalvaro"_s);
    return QIcon(new Symbolmaler(vorlage));
}

Zeichen::Zeichen(int groesse, QWidget *parent)
    : QWidget(parent)
    , groesse_(groesse)
{
    setFixedSize(groesse, groesse);
}

void Zeichen::setzen(const QString &name, Farbton ton, const QString &beschreibung)
{
    name_ = name;
    ton_ = ton;
    setAccessibleName(beschreibung);
    update();
}

QColor Zeichen::toenung() const
{
    return ton_(palette());
}

void Zeichen::paintEvent(QPaintEvent *)
{
    if (!name_.isEmpty()) {
        // Soft on purpose, as long as it is there: the words beside it say the same.
        constexpr double sichtbar = 1.9;
        const QColor farbe = Farbe::lesbar(toenung(), untergrund(*this), sichtbar);
        QPainter(this).drawPixmap(0, 0, symbolbild(name_, groesse_, farbe, devicePixelRatioF()));
    }
}

} // namespace kalvaro
