#include "ui/symbole.h"

#include "ui/unterlage.h"

#include <QImageReader>
#include <QPainter>

// The resources of a static library must be asked for by name, from outside any namespace.
static void symboleLaden()
{
    Q_INIT_RESOURCE(symbole);
}

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString ort(const QString &name)
{
    symboleLaden();
    return u":/kalvaro/symbole/%1.svg"_s.arg(name);
}

} // namespace

QPixmap symbolbild(const QString &name, int groesse, const QColor &farbe, double faktor)
{
    const int pixel = qRound(groesse * faktor);
    QImageReader leser(ort(name), "svg");
    leser.setScaledSize({pixel, pixel});
    QImage maske = leser.read();
    if (maske.isNull()) {
        return {};
    }
    maske = std::move(maske).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter maler(&maske);
    maler.setCompositionMode(QPainter::CompositionMode_SourceIn);
    maler.fillRect(maske.rect(), farbe);
    maler.end();
    maske.setDevicePixelRatio(faktor);
    return QPixmap::fromImage(std::move(maske));
}

QIcon programmsymbol()
{
    return QIcon(ort(u"de.kalvaro.kalvaro"_s));
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
